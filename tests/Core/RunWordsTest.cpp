#include "Core/RunWords.h"

#include "Core/ErrorMessage.h"
#include "Core/RunFilter.h"
#include "Core/RunLogFixture.h"
#include "Core/Texts.h"
#include "Platform/SystemError.h"

#include <cerrno>
#include <gmock/gmock.h>

namespace vh {
namespace {

using test::makeRecord;

const Texts english(Language::en);
const Texts spanish(Language::es);
const Texts french(Language::fr);

const Messages cleaned{{"clean.result-trashed", {{"count", 3}, {"bytes", ByteCount{8'400'000'000}}}},
                       {"clean.stopped", {}}};

/// As it comes back from the file.
RunRecord recordOf(const RunWords& words) {
    RunRecord record = makeRecord(words.summary);
    record.facts = words.facts;
    if (!words.problems.empty())
        record.details = rawDetails({{RunDetail::errors, words.problems}});
    return decodeJson<RunRecord>(encodeJson(record));
}

TEST(RunWords, ARecordWrittenInSpanishIsShownInFrench) {
    const Messages problems{
        {"run.item-problem", {{"path", "/a: b"}, {"reason", Message{"error.no-space", {}}}}}};
    const RunRecord record = recordOf(RunWords(cleaned, spanish, problems));
    EXPECT_EQ(record.summary, worded(cleaned, spanish));
    EXPECT_EQ(summaryOf(record, spanish), record.summary);
    EXPECT_EQ(summaryOf(record, french), worded(cleaned, french));
    EXPECT_THAT(summaryOf(record, french), testing::HasSubstr("8,4 Go"));
    EXPECT_EQ(detailOf(record, RunDetail::errors, french), "/a: b — il n’y a plus de place sur le volume");
    EXPECT_EQ(sentencesOf(record), cleaned);
    EXPECT_EQ(problemsOf(record), problems);
}

TEST(RunWords, ASearchFindsWhatIsShown) {
    const std::vector<RunRecord> records{recordOf(RunWords({{"error.no-space", {}}}, spanish)),
                                         makeRecord("queda espacio")};
    const auto found = [&](const char* text, const Texts& texts) {
        RunFilter filter;
        filter.text = text;
        return filter.apply(records, {{}, "here", test::noon, LocalCalendar("UTC"), texts}).size();
    };
    EXPECT_EQ(found("QUEDA espacio", spanish), 2u);
    EXPECT_EQ(found("queda espacio", french), 1u);
    EXPECT_EQ(found("plus de place", french), 1u);
}

TEST(RunWords, OldRecordsKeepTheirWords) {
    const RunRecord old = makeRecord("Se movieron 3 elementos");
    EXPECT_EQ(encodeJson(old).find("facts"), std::string::npos);
    EXPECT_EQ(summaryOf(old, french), old.summary);
    EXPECT_EQ(worded(sentencesOf(old), french), old.summary);
}

TEST(RunWords, UnknownOrHostileFactsFallBackToTheWords) {
    const auto facts = [](const std::string& summary) {
        return R"({"language":"es","summary":)" + summary + "}";
    };
    std::string nested = R"({"key":"run.named","arguments":{"name":{"text":"x"},"text":{"messages":[)";
    std::string deep;
    for (int i = 0; i < 300; ++i)
        deep += nested;
    for (int i = 0; i < 300; ++i)
        deep += "]}}}";
    const std::string cases[]{
        "",
        "[",
        "7",
        facts("7"),
        facts("[]"),
        facts(R"([{"key":"of.a-newer-version"}])"),
        facts(R"([{"key":"clean.stopped"},{"key":"of.a-newer-version"}])"),
        facts(R"([{"key":"clean.result-trashed"}])"),                                 // lacks arguments
        facts(R"([{"key":"undo.skipped","arguments":{"count":{"text":"many"}}}])"),   // a text for a number
        facts(R"([{"key":"undo.skipped","arguments":{"count":{"light-years":3}}}])"), // of no known kind
        facts(R"([{"key":"undo.skipped","arguments":{"count":{"count":1,"text":"1"}}}])"), // of two kinds
        facts(R"([{"key":""}])"),
        facts("[" + deep + "]"),
        facts(R"([{"key":"clean.stopped"},{"key":"","arguments":{"text":{"text":")" +
              std::string(1u << 20, 'x') + R"("}}}])"),
    };
    for (const std::string& each : cases) {
        RunRecord record = makeRecord("Stored words");
        record.facts = each;
        record = decodeJson<RunRecord>(encodeJson(record));
        EXPECT_EQ(summaryOf(record, french), "Stored words") << each.substr(0, 200);
    }
    // What is no text at all costs the record nothing else.
    EXPECT_FALSE(decodeJson<RunRecord>(encodeJson(makeRecord("x")).insert(1, R"("facts":{"a":1},)")).facts);
}

TEST(ErrorMessage, KnownReasonsAreOursAndOthersTheSystems) {
    EXPECT_EQ(worded(messageOf(SystemError(ENOSPC, "/a")), spanish), "/a: no queda espacio en el volumen");
    EXPECT_EQ(worded(reasonOf(SystemError(EROFS, "/a")), french), "le volume est en lecture seule");
    EXPECT_EQ(worded(reasonOf(SystemError("/a", "Not a plain file")), french), "pas un fichier ordinaire");
    const SystemError rare(ENOTTY, "/a");
    EXPECT_EQ(worded(messageOf(rare), english), rare.what());
    EXPECT_EQ(worded(messageOf(std::runtime_error("a\nb")), english), "a\\x0Ab");
}

} // namespace
} // namespace vh
