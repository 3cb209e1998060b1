#include "app/ScanCleanViewModel.h"

#include "Tools/SystemJunk/SystemJunkModule.h"
#include "support/FakeModule.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The page of the fake module.
struct ScanClean : testing::Test {
    Desk desk;
    std::shared_ptr<FakeModule> module = std::make_shared<FakeModule>();
    std::unique_ptr<ScanCleanViewModel> page = std::make_unique<ScanCleanViewModel>(desk.context, module);

    void addThree() {
        module->add("/home/c/pip", 4000000);
        module->add("/home/c/Éclair", 2000000);
        module->add("/home/l/old.log", 1000000, "Logs");
    }
    void scan() {
        page->scan();
        ASSERT_TRUE(page->isScanning());
        ASSERT_TRUE(waitFor([&] { return !page->isScanning(); }));
    }
    void cleanAll() {
        page->toggleSelectAll();
        page->review();
        page->start();
        ASSERT_TRUE(page->isCleaning());
        ASSERT_TRUE(waitFor([&] { return page->stageName() == "done" && !page->isScanning(); }));
    }
    std::vector<std::string> shown() { return column(page->items(), "name"); }
};

TEST_F(ScanClean, StagesFollowTheWork) {
    addThree();
    EXPECT_EQ(page->stageName(), "idle");
    page->review();
    page->start();
    EXPECT_EQ(page->stageName(), "idle");

    scan();
    EXPECT_EQ(page->stageName(), "scanned");
    EXPECT_EQ(page->itemCount(), 3);
    EXPECT_EQ(page->totalText(), "7 MB");
    EXPECT_THAT(column(page->items(), "fraction"), ElementsAre("1", "0.5", "0.25"));
    page->review();
    EXPECT_EQ(page->stageName(), "scanned") << "nothing is selected";

    page->toggleAt(0);
    page->toggle(page->items()->index(2, 0).data(page->items()->roleNames().key("itemId")).toString());
    EXPECT_EQ(page->selectedCount(), 2);
    EXPECT_EQ(page->selectedText(), "5 MB");
    page->review();
    EXPECT_EQ(page->stageName(), "review");
    EXPECT_THAT(column(page->selectedItems(), "name"), ElementsAre("pip", "old.log"));
    page->toggleAt(1);
    EXPECT_EQ(page->selectedCount(), 2) << "the review is what goes";
    page->back();
    EXPECT_EQ(page->stageName(), "scanned");

    page->review();
    module->cleanGate.close();
    page->start();
    EXPECT_EQ(page->stageName(), "working");
    EXPECT_TRUE(desk.context.activity().busyTools().contains("system-junk"));
    page->scan();
    page->setMethodName("permanent");
    EXPECT_FALSE(page->isScanning());
    EXPECT_EQ(page->methodName(), "trash");
    ASSERT_TRUE(waitFor([&] { return module->cleanGate.isWaitedAt(); }));
    module->cleanGate.open();
    ASSERT_TRUE(waitFor([&] { return page->stageName() == "done" && !page->isScanning(); }));
    EXPECT_THAT(shown(), ElementsAre("Éclair"));
    EXPECT_EQ(page->selectedCount(), 0);
    EXPECT_EQ(page->resultOutcome(), "success");
    EXPECT_THAT(desk.context.activity().running(), IsEmpty());

    const auto runs = desk.log().all();
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].toolID, "system-junk");
    EXPECT_EQ(runs[0].trigger, Trigger::manual);
    EXPECT_EQ(runs[0].metric(RunMetric::filesRemoved), 2);
    EXPECT_EQ(runs[0].metric(RunMetric::freedBytes), 5e6);
    EXPECT_EQ(page->resultText().toStdString(), runs[0].summary);
    page->back();
    EXPECT_EQ(page->stageName(), "scanned");
}

TEST_F(ScanClean, AFilterHidesButNeverSelectsOrClears) {
    addThree();
    scan();
    page->toggleAt(0);
    page->setSearch("ECLAIR");
    EXPECT_THAT(shown(), ElementsAre("Éclair"));
    EXPECT_EQ(page->selectedCount(), 1);
    EXPECT_EQ(page->shownSelection(), "none");
    page->toggleSelectAll();
    EXPECT_EQ(page->shownSelection(), "all");
    EXPECT_THAT(column(page->selectedItems(), "name"), ElementsAre("pip", "Éclair"));
    page->toggleSelectAll();
    EXPECT_THAT(column(page->selectedItems(), "name"), ElementsAre("pip"));
    page->setSearch("nothing like it");
    EXPECT_THAT(shown(), IsEmpty());
    page->toggleSelectAll();
    page->toggleCategory("Logs");
    EXPECT_EQ(page->selectedCount(), 1);

    page->setSearch("");
    page->setCategory("Logs");
    EXPECT_THAT(shown(), ElementsAre("old.log"));
    page->toggleCategory("Caches");
    EXPECT_THAT(column(page->selectedItems(), "name"), ElementsAre("pip", "Éclair"));
    EXPECT_THAT(column(page->categories(), "name"), ElementsAre("Caches", "Logs"));
    EXPECT_THAT(column(page->categories(), "selection"), ElementsAre("all", "none"));
    EXPECT_EQ(page->itemCount(), 3);
}

TEST_F(ScanClean, CategoriesHaveAFixedOrderAndTitlesOfTheLanguage) {
    for (const char* category : {"Zulu", "Temporary", "Logs", "Caches+Logs", "Caches"})
        module->add(std::string("/x/") + category, 10, category);
    scan();
    EXPECT_THAT(column(page->categories(), "name"),
                ElementsAre("Caches", "Logs", "Temporary", "Caches+Logs", "Zulu"));
    EXPECT_THAT(column(page->categories(), "title"),
                ElementsAre("Caches", "Logs", "Temporary", "Caches + Logs", "Zulu"));
    const auto told = countOf(page.get(), &ScanCleanViewModel::selectionChanged);
    desk.context.texts().setSetting("es");
    EXPECT_EQ(*told, 1);
    EXPECT_EQ(column(page->categories(), "title")[1], "Registros");
    EXPECT_EQ(column(page->items(), "categoryTitle")[2], "Registros");
}

TEST_F(ScanClean, SaysOfEveryItemWhyItStayed) {
    const std::vector<std::pair<std::string, std::string>> reasons{
        {"Operation not permitted", "protected by the system"},
        {"Permission denied", "protected by the system"},
        {"Device or resource busy", "in use by an app"},
        {"No such file or directory", "already gone"},
        {"This can only be deleted permanently", "only a permanent delete removes it"},
        {"Mail is running", "the app is running"},
        {"Needs the privileged helper", "helper"},
        {"A protected app", "protected"},
        {"Mail is open — quit it first", "Mail"},
        {"No space left on device", "could not be removed"},
    };
    for (size_t i = 0; i < reasons.size(); ++i)
        module->add("/x/item" + std::to_string(i), 10, "Caches", reasons[i].first);
    scan();
    cleanAll();
    EXPECT_EQ(page->resultOutcome(), "failed");
    ASSERT_EQ(page->skippedDetails().size(), static_cast<qsizetype>(reasons.size()));
    for (size_t i = 0; i < reasons.size(); ++i) {
        const std::string line = page->skippedDetails()[static_cast<qsizetype>(i)].toStdString();
        EXPECT_THAT(line, testing::StartsWith("/x/item" + std::to_string(i) + " — "));
        EXPECT_THAT(line, testing::HasSubstr(reasons[i].second));
    }
    EXPECT_THAT(page->protectedPaths(), ElementsAre("/x/item0", "/x/item1", "/x/item2"));
    EXPECT_EQ(column(page->items(), "isProtected")[2], "true");
    EXPECT_EQ(column(page->items(), "isProtected")[3], "false");

    module->add("/x/fine", 10);
    scan();
    EXPECT_THAT(page->skippedDetails(), IsEmpty());
    cleanAll();
    EXPECT_EQ(page->resultOutcome(), "warning");
    EXPECT_EQ(desk.log().recent(1)[0].metric(RunMetric::errors), double(reasons.size()));
}

TEST_F(ScanClean, AFailedScanKeepsWhatWasKnown) {
    addThree();
    module->scanError = "/home/c: Input/output error";
    scan();
    EXPECT_EQ(page->stageName(), "idle");
    EXPECT_EQ(page->errorMessage(), "/home/c: Input/output error");
    module->scanError.clear();
    scan();
    EXPECT_EQ(page->errorMessage(), "");
    EXPECT_EQ(page->itemCount(), 3);
    module->scanError = "again";
    scan();
    EXPECT_EQ(page->itemCount(), 3);

    module->scanError.clear();
    scan();
    page->toggleAt(0);
    page->review();
    module->cleanGate.close();
    page->start();
    ASSERT_TRUE(waitFor([&] { return module->cleanGate.isWaitedAt(); }));
    module->scanError = "gone";
    module->cleanGate.open();
    ASSERT_TRUE(waitFor([&] { return page->stageName() == "done" && !page->isScanning(); }));
    EXPECT_EQ(page->itemCount(), 0) << "after a clean the old report no longer holds";
    EXPECT_EQ(page->resultOutcome(), "success");
    EXPECT_EQ(page->errorMessage(), "");
}

TEST_F(ScanClean, ACleanThatThrowsIsAFailedRun) {
    addThree();
    scan();
    module->cleanError = "The module gave up.";
    cleanAll();
    EXPECT_EQ(page->resultOutcome(), "failed");
    EXPECT_EQ(page->resultText(), "The module gave up.");
    const auto runs = desk.log().all();
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].outcome, Outcome::failed);
    EXPECT_EQ(page->itemCount(), 3);
}

TEST_F(ScanClean, StoppingAScanKeepsTheReportAndStoppingACleanLeavesARecord) {
    addThree();
    scan();
    module->scanGate.close();
    page->scan();
    ASSERT_TRUE(waitFor([&] { return module->scanGate.isWaitedAt() && page->progress() == 0.5; }));
    EXPECT_EQ(page->progressText(), "/home/looking/here");
    page->stop();
    ASSERT_TRUE(waitFor([&] { return !page->isScanning(); }));
    EXPECT_EQ(page->itemCount(), 3);
    EXPECT_EQ(page->errorMessage(), "");
    module->scanGate.open();

    module->cleanGate.close();
    page->toggleSelectAll();
    page->review();
    page->start();
    ASSERT_TRUE(waitFor([&] { return module->cleanGate.isWaitedAt(); }));
    page->stop();
    ASSERT_TRUE(waitFor([&] { return page->stageName() == "done" && !page->isScanning(); }));
    EXPECT_EQ(page->resultOutcome(), "cancelled");
    EXPECT_EQ(page->itemCount(), 2) << "the item at work was finished";
    EXPECT_EQ(desk.log().all().at(0).metric(RunMetric::filesRemoved), 1);
}

TEST_F(ScanClean, MayGoWhileItWorks) {
    addThree();
    module->scanGate.close();
    page->scan();
    ASSERT_TRUE(waitFor([&] { return module->scanGate.isWaitedAt(); }));
    page.reset();
    EXPECT_FALSE(module->scanGate.isWaitedAt());
    module->scanGate.open();

    page = std::make_unique<ScanCleanViewModel>(desk.context, module);
    scan();
    page->toggleSelectAll();
    page->review();
    module->cleanGate.close();
    page->start();
    ASSERT_TRUE(waitFor([&] { return module->cleanGate.isWaitedAt(); }));
    page.reset();
    settle();
    const auto runs = desk.log().all();
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].outcome, Outcome::cancelled);
    EXPECT_EQ(desk.session.runFiles().rows(runs[0].id).size(), 1u);
    EXPECT_THAT(desk.context.activity().running(), IsEmpty());
}

TEST(ScanCleanOnFiles, CleansAFolderAndPutsItBack) {
    Desk desk;
    const std::string root = desk.home / "scratch";
    junk::test::write(root + "/big/inside", std::string(5000, 'x'));
    junk::test::write(root + "/b\xff\nd: name", "12345");
    junk::test::write(root + "/KEEP_ME", "mine");
    ScanCleanViewModel page(
        desk.context, std::make_shared<junk::SystemJunkModule>(junk::SystemJunkConfiguration::fixture(root)));
    const auto finished = [&] {
        return waitFor([&] { return !page.isScanning() && !page.isCleaning(); });
    };
    page.scan();
    ASSERT_TRUE(finished());
    EXPECT_THAT(column(page.items(), "name"), ElementsAre("big", "b\\xFF\\x0Ad: name"));
    EXPECT_THAT(column(page.items(), "displayPath")[0], "~/scratch/big");

    page.toggleSelectAll();
    page.review();
    page.start();
    ASSERT_TRUE(waitFor([&] { return page.canUndo(); }));
    EXPECT_FALSE(junk::test::fs::exists(root + "/big"));
    EXPECT_TRUE(junk::test::fs::exists(root + "/KEEP_ME"));
    EXPECT_EQ(page.resultOutcome(), "success");
    EXPECT_THAT(page.skippedDetails(), IsEmpty());
    EXPECT_EQ(page.undoText(), "Put 2 items back");

    page.undo();
    EXPECT_TRUE(page.isCleaning());
    ASSERT_TRUE(finished());
    EXPECT_EQ(readFile(root + "/b\xff\nd: name"), "12345");
    EXPECT_EQ(page.stageName(), "done");
    EXPECT_EQ(page.resultOutcome(), "success");
    EXPECT_FALSE(page.canUndo());
    EXPECT_EQ(page.itemCount(), 2);
    EXPECT_EQ(desk.log().all().size(), 2u);

    page.setMethodName("permanent");
    page.toggleSelectAll();
    page.review();
    page.start();
    ASSERT_TRUE(finished());
    EXPECT_FALSE(junk::test::fs::exists(root + "/big"));
    EXPECT_FALSE(page.canUndo());
}

} // namespace
} // namespace vh::app::test
