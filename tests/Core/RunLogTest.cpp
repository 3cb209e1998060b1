#include "RunLogFixture.h"

#include "Core/RunFilter.h"
#include "Core/RunWords.h"
#include "Platform/GrowingFile.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <limits>

namespace vh {
namespace {

using std::chrono::hours;
using test::Database;
using test::makeRecord;
using test::noon;
using test::summaries;
using testing::ElementsAre;
using testing::IsEmpty;

class RunLogTest : public testing::Test {
protected:
    std::string logFile() const { return dir / "data/runs.jsonl"; }
    std::vector<std::string> reread(size_t maxRecords = RunLog::defaultMaxRecords) const {
        return summaries(Database(dir.path(), maxRecords).log.all());
    }
    test::TempDir dir;
};

TEST_F(RunLogTest, AHandleWritesOneRecordWithWhatWasSaidAtBothEnds) {
    Database base(dir.path());
    auto run = base.log.begin("fast-copy", Trigger::flow,
                              {{RunDetail::source, "/a"}, {RunDetail::flow, "F"}, {RunDetail::event, "old"}});
    EXPECT_THAT(base.log.all(), IsEmpty());
    base.now += std::chrono::milliseconds(2500);
    const auto record = run->finish(Outcome::warning, "Copied", {{RunMetric::filesCopied, 3}},
                                    {{RunDetail::flow, ""}, {RunDetail::event, "new"}});
    EXPECT_EQ(run->finish(Outcome::failed, "Again"), record);
    EXPECT_TRUE(run->isFinished());

    const auto stored = Database(dir.path()).log.all();
    EXPECT_THAT(stored, ElementsAre(record));
    EXPECT_EQ(record.id, run->id());
    EXPECT_EQ(record.duration, 2.5);
    EXPECT_EQ(record.outcome, Outcome::warning);
    EXPECT_EQ(record.computer, RunLog::thisComputer());
    EXPECT_EQ(record.details, (std::map<std::string, std::string>{{"source", "/a"}, {"event", "new"}}));
    EXPECT_EQ(record.metric(RunMetric::filesCopied), 3);

    const auto bare =
        base.log.begin("sync", Trigger::manual, {{RunDetail::flow, ""}})->finish(Outcome::success, "");
    EXPECT_EQ(bare.details, std::nullopt);
    base.log.begin("sync", Trigger::manual);
    EXPECT_EQ(base.log.all().size(), 2u);
}

TEST_F(RunLogTest, OneDamagedLineCostsNoOther) {
    const std::string good = encodeJson(makeRecord("good"));
    const auto changed = [&](std::string_view from, std::string_view to) {
        std::string line = good;
        line.replace(line.find(from), from.size(), to);
        return line;
    };
    makeFolders(dir / "data");
    writeFileAtomically(logFile(),
                        fmt::format("{}\n\n{}\n{}\n{{\"id\":\n{}\n\xff\n{}\n{}\n{}", changed("good", "first"),
                                    changed("success", "banana"), changed("manual", "banana"),
                                    changed("\"toolID\"", "\"tool\""), std::string(40, '\0'),
                                    changed("good", "last"), changed("good", "no line feed yet")));
    Database base(dir.path());
    EXPECT_THAT(summaries(base.log.all()), ElementsAre("first", "good", "last"));
    EXPECT_EQ(base.log.all()[1].trigger, Trigger::manual);

    base.log.record(makeRecord("appended"));
    EXPECT_THAT(reread(), ElementsAre("first", "good", "last", "no line feed yet", "appended"));
}

TEST_F(RunLogTest, ARecordAfterACutLineIsNotGluedToIt) {
    Database base(dir.path());
    base.log.record(makeRecord("one"));
    appendToFile(logFile(), R"({"id":"cut)");
    base.log.record(makeRecord("two"));
    EXPECT_THAT(summaries(base.log.all()), ElementsAre("one", "two"));
    EXPECT_THAT(reread(), ElementsAre("one", "two"));
}

TEST_F(RunLogTest, OldLinesGoWhenTheLogIsFull) {
    Database base(dir.path(), 3);
    for (const auto* summary : {"1", "2", "3", "4"})
        base.log.record(makeRecord(summary));
    EXPECT_THAT(summaries(base.log.all()), ElementsAre("2", "3", "4"));
    EXPECT_THAT(reread(), ElementsAre("2", "3", "4"));

    // A long log is rewritten now and then only, but never shows more than it may.
    test::TempDir other;
    Database large(other.path(), 32);
    for (int i = 0; i < 34; ++i)
        large.log.record(makeRecord(std::to_string(i)));
    const auto before = stampOf(large.log.location());
    EXPECT_EQ(large.log.all().size(), 32u);
    EXPECT_EQ(large.log.all().front().summary, "2");
    EXPECT_EQ(Database(other.path(), 100).log.all().size(), 34u);
    large.log.record(makeRecord("34"));
    EXPECT_NE(stampOf(large.log.location())->identity, before->identity);
    EXPECT_EQ(Database(other.path(), 100).log.all().size(), 32u);
}

TEST_F(RunLogTest, ARewriteKeepsWhatANewerVersionWrote) {
    std::string line = encodeJson(makeRecord("newer"));
    line.replace(line.find("\"manual\""), 8, "\"moonrise\",\"zeal\":1");
    makeFolders(dir / "data");
    writeFileAtomically(logFile(), encodeJson(makeRecord("old", noon - hours(100))) + "\n" + line + "\n");
    Database(dir.path()).log.prune(noon - hours(50), std::nullopt);
    EXPECT_EQ(readFile(logFile()), line + "\n");
}

TEST_F(RunLogTest, AReaderNoticesThatTheFileWasReplacedByALongerOne) {
    Database base(dir.path());
    base.log.record(makeRecord("old", noon - hours(48)));
    base.log.record(makeRecord("young"));
    Database other(dir.path());
    other.log.prune(noon - hours(24), std::nullopt);
    for (const auto* summary : {"a", "b", "c"})
        other.log.record(makeRecord(summary));
    EXPECT_THAT(summaries(base.log.all()), ElementsAre("young", "a", "b", "c"));
}

TEST_F(RunLogTest, AnswersQuestionsAboutTheRuns) {
    Database base(dir.path());
    for (int i = 0; i < 4; ++i) {
        auto record = makeRecord(std::to_string(i), noon + hours(i));
        record.toolID = i % 2 ? "odd" : "even";
        base.log.record(record);
    }
    EXPECT_THAT(summaries(base.log.recent(2)), ElementsAre("3", "2"));
    EXPECT_THAT(summaries(base.log.since(noon + hours(2))), ElementsAre("2", "3"));
    EXPECT_EQ(base.log.last("even")->summary, "2");
    EXPECT_EQ(base.log.last("none"), std::nullopt);
    EXPECT_EQ(base.log.total(RunMetric::bytesCopied, noon + hours(1)), 300);
    EXPECT_EQ(base.log.total(RunMetric::freedBytes, noon), 0);
    EXPECT_EQ(base.log.bytes(), static_cast<int64_t>(readFile(logFile()).size()));
}

/// A search looks at lines before it reads them; it finds what a filter over all records finds.
TEST_F(RunLogTest, ASearchFindsWhatAFilterFinds) {
    Database base(dir.path());
    const Texts english(Language::en), french(Language::fr);
    const RunWords trashed({{"clean.result-trashed", {{"count", 2}, {"bytes", ByteCount{7}}}}}, french);
    for (const char* summary : {"Plain words", "PLAIN WORDS", "\u00c9clair", "K\u00d6LN", "\uff2belvin",
                                "a \"b\" c", "two\nlines", "uncommon", "facts", "2 \u00e9l\u00e9ments"})
        base.log.record(makeRecord(summary));
    RunRecord worded = makeRecord(trashed.summary);
    worded.facts = trashed.facts;
    base.log.record(worded);
    RunRecord other = makeRecord("of another tool");
    other.toolID = "system-junk";
    other.computer.reset();
    base.log.record(other);
    std::string escaped = encodeJson(makeRecord("caf!"));
    escaped.replace(escaped.find('!'), 1, "\\u0045");
    appendToFile(logFile(), escaped + "\n");

    const auto named = [](const std::string& tool) {
        return tool == "system-junk" ? std::string("Cleaner of caches") : tool;
    };
    for (const Texts& texts : {english, french})
        for (const char* needle :
             {"plain", "ECLAIR", "\u00e9clair", "koln", "kelvin", "b\" c", "lines", "2 ", "trash",
              "corbeille", "cleaner", "here", "ateneo", "cafe", "facts", "language", "nothing"}) {
            RunFilter filter;
            filter.text = needle;
            const RunFilter::Surroundings dependencies{named, "here", noon, LocalCalendar("UTC"), texts};
            const Database fresh(dir.path());
            auto expected = filter.apply(fresh.log.all(), dependencies);
            std::ranges::reverse(expected);
            const Database undecoded(dir.path());
            EXPECT_EQ(undecoded.log.search(RunMatcher(filter, dependencies), 100), expected) << needle;
            EXPECT_EQ(fresh.log.search(RunMatcher(filter, dependencies), 1).size(),
                      expected.empty() ? 0u : 1u)
                << needle;
        }
}

TEST_F(RunLogTest, HookAndObserversMayReadTheLog) {
    Database base(dir.path());
    std::vector<std::string> told;
    base.log.setOnRecord([&](const RunRecord& record) {
        told.push_back(record.summary + std::to_string(base.log.all().size()));
    });
    auto token = base.log.observe([&] { told.push_back("changed" + std::to_string(base.log.all().size())); });
    base.log.record(makeRecord("a"));
    EXPECT_THAT(told, ElementsAre("changed1", "a1"));

    Database other(dir.path());
    base.log.refresh();
    EXPECT_EQ(told.size(), 2u) << "nothing new, yet observers were told";
    other.log.record(makeRecord("b"));
    EXPECT_EQ(base.log.all().size(), 2u);
    base.log.refresh();
    EXPECT_EQ(told.back(), "changed2");
    token.reset();
    base.log.removeAll();
    EXPECT_EQ(told.size(), 3u);
}

TEST_F(RunLogTest, WhatHasNoJsonFormStaysInMemoryOnly) {
    Database base(dir.path());
    auto odd = makeRecord("odd");
    odd.metrics["bytesCopied"] = std::numeric_limits<double>::quiet_NaN();
    base.log.record(odd);
    base.log.record(makeRecord("next"));
    EXPECT_THAT(summaries(base.log.all()), testing::UnorderedElementsAre("odd", "next"));
    EXPECT_THAT(reread(), ElementsAre("next"));
}

TEST_F(RunLogTest, PruneForgetsOldRunsAndTheirLists) {
    Database base(dir.path());
    const auto old = makeRecord("old", noon - hours(48));
    const auto young = makeRecord("young");
    for (const auto& record : {old, young}) {
        base.log.record(record);
        base.files.save(record.id, {{.path = "/x", .state = "copied"}});
    }
    base.files.save(Uuid::random(), {});
    base.log.prune(std::nullopt, std::nullopt);
    EXPECT_EQ(base.files.usage().lists, 2u) << "only the list without a record may go";
    base.log.prune(noon - hours(24), std::nullopt);
    EXPECT_THAT(reread(), ElementsAre("young"));
    EXPECT_FALSE(base.files.has(old.id));
    EXPECT_TRUE(base.files.has(young.id));
    base.log.prune(std::nullopt, systemNow() + hours(1));
    EXPECT_EQ(base.files.usage().lists, 0u);
    EXPECT_THAT(reread(), ElementsAre("young"));
}

TEST_F(RunLogTest, ClearAllTakesListsAlongAndRemoveAllDoesNot) {
    Database base(dir.path());
    const auto record = makeRecord("x");
    base.log.record(record);
    base.files.save(record.id, {{.path = "/x", .state = "copied"}});
    base.log.removeAll();
    EXPECT_THAT(reread(), IsEmpty());
    EXPECT_TRUE(base.files.has(record.id));
    base.log.clearAll();
    EXPECT_FALSE(base.files.has(record.id));
}

TEST_F(RunLogTest, MovesWithItsListsAndOthersFollow) {
    Database base(dir.path());
    Database other(dir.path());
    const auto record = makeRecord("moved");
    base.log.record(record);
    base.files.save(record.id, {{.path = "/x", .state = "copied"}});
    makeFolders(dir / "new");
    writeFileAtomically(dir / "new/runs.jsonl", "what lay there before\n");

    base.log.relocate(dir / "new");
    EXPECT_EQ(base.log.location(), dir / "new/runs.jsonl");
    EXPECT_FALSE(statusOf(logFile()));
    EXPECT_TRUE(base.files.has(record.id));
    other.log.record(makeRecord("followed"));
    EXPECT_THAT(summaries(base.log.all()), ElementsAre("moved", "followed"));
    EXPECT_THAT(reread(), ElementsAre("moved", "followed"));

    std::filesystem::create_directory_symlink(dir / "new", dir / "same");
    base.log.relocate(dir / "same");
    EXPECT_THAT(reread(), ElementsAre("moved", "followed")) << "moving to where it lies lost the log";
}

TEST(RunRecord, CountsComeFromDetailsBeforeMetrics) {
    RunRecord record;
    EXPECT_EQ(record.files(), std::nullopt);
    record.metrics = {{"filesRemoved", 7}, {"freedBytes", 1e300}};
    EXPECT_EQ(record.files(), 7);
    EXPECT_EQ(record.bytes(), std::nullopt) << "a number out of range was believed";
    record.metrics["filesCopied"] = 8;
    EXPECT_EQ(record.files(), 8);
    record.details = {{"files", "9"}, {"bytes", "12 MB"}};
    EXPECT_EQ(record.files(), 9);
    EXPECT_EQ(record.bytes(), std::nullopt);
    EXPECT_EQ(joinList({"a", "b"}), "a\nb");
}

TEST(RunFiles, AListThatCameAfterTheLookAroundIsNotPruned) {
    test::TempDir dir;
    Database base(dir.path());
    const Uuid early = Uuid::random();
    const Uuid late = Uuid::random();
    base.files.save(early, {});
    const auto seen = base.files.runs();
    base.files.save(late, {});
    base.files.prune(seen, std::nullopt, {});
    EXPECT_THAT(base.files.runs(), ElementsAre(late));
}

TEST(RunFiles, ReadsNoFurtherThanAskedAndSkipsDamage) {
    test::TempDir dir;
    Database base(dir.path());
    const Uuid run = Uuid::random();
    const std::vector<RunFileRow> rows{{.path = "/b\xff", .place = "/t", .bytes = -1, .state = "copied"},
                                       {.path = "/c", .state = "failed", .checksum = "00"}};
    base.files.save(run, rows);
    EXPECT_EQ(base.files.rows(run), rows);
    EXPECT_EQ(base.files.rows(run, 1).size(), 1u);
    EXPECT_THAT(base.files.rows(run, 0), IsEmpty());
    EXPECT_THAT(base.files.rows(Uuid::random()), IsEmpty());
    appendToFile(dir / ("data/run-files/" + run.text() + ".jsonl"), "{\n" + encodeJson(rows[1]) + "\n");
    EXPECT_EQ(base.files.rows(run).size(), 3u);
}

} // namespace
} // namespace vh
