#include "Features/Activity/view/ActivityViewModel.h"

#include "Tools/SystemJunk/SystemJunkModule.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using std::chrono::days;
using std::chrono::hours;
using testing::ElementsAre;
using testing::IsEmpty;

struct Activity : testing::Test {
    Desk desk;
    std::unique_ptr<ActivityViewModel> page;

    void open() {
        page = std::make_unique<ActivityViewModel>(desk.context);
        load();
    }
    void load() {
        ASSERT_TRUE(waitFor([&] { return !page->isLoading(); }));
    }
    void select(const Uuid& id) {
        page->select(QString::fromStdString(id.text()));
        ASSERT_TRUE(waitFor([&] { return selected("runId") == id.text(); }));
    }
    std::string selected(const char* key) { return page->selectedRun().value(key).toString().toStdString(); }
    std::vector<std::string> shown() { return column(page->runs(), "summary"); }

    Uuid add(RunRecord run) {
        desk.log().record(run);
        return run.id;
    }
    void addSome() {
        add(makeRun("sync", "old", noon - days(60)));
        RunRecord clean = makeRun("system-junk", "cleaned caché", noon - days(1));
        clean.metrics = {{"filesRemoved", 1200}, {"freedBytes", 2.5e6}};
        clean.trigger = Trigger::scheduled;
        add(clean);
        RunRecord copy = makeRun("fast-copy", "copied", noon - hours(2));
        copy.outcome = Outcome::failed;
        copy.computer = "Ateneo";
        add(copy);
    }
};

TEST_F(Activity, ShowsTheLogNewestFirst) {
    addSome();
    open();
    EXPECT_THAT(shown(), ElementsAre("copied", "cleaned caché", "old"));
    EXPECT_THAT(column(page->runs(), "dayText"),
                ElementsAre("Today", "Yesterday", "Wednesday, 23 September 2026"));
    EXPECT_THAT(column(page->runs(), "timeText"), ElementsAre("10:00", "12:00", "12:00"));
    EXPECT_THAT(column(page->runs(), "toolName"), ElementsAre("Copy & Clone", "Cache", "Sync"));
    EXPECT_THAT(column(page->runs(), "filesText"), ElementsAre("", "1,200", ""));
    EXPECT_THAT(column(page->runs(), "bytesText"), ElementsAre("", "2.5 MB", ""));
    EXPECT_THAT(column(page->runs(), "outcome"), ElementsAre("failed", "success", "success"));
    EXPECT_EQ(page->totalsText(), "3 runs · 1,200 files · 2.5 MB freed");
    EXPECT_EQ(column(page->toolOptions(), "title"),
              (std::vector<std::string>{"All tools", "Cache", "Copy & Clone", "Sync"}));
    EXPECT_EQ(column(page->triggerOptions(), "value"), (std::vector<std::string>{"", "manual", "scheduled"}));

    desk.context.texts().setSetting("fr");
    load();
    EXPECT_THAT(column(page->runs(), "dayText"),
                ElementsAre("Aujourd’hui", "Hier", "mercredi 23 septembre 2026"));

    add(makeRun("sync", "new"));
    ASSERT_TRUE(waitFor([&] { return page->runCount() == 4; }));
    EXPECT_EQ(shown()[0], "new");
}

TEST_F(Activity, FiltersByEveryField) {
    addSome();
    open();
    const std::vector<std::string> all = shown();
    const struct {
        void (ActivityViewModel::*set)(const QString&);
        const char* value;
        std::vector<std::string> shown;
    } cases[] = {
        {&ActivityViewModel::setPeriod, "today", {"copied"}},
        {&ActivityViewModel::setPeriod, "yesterday", {"cleaned caché"}},
        {&ActivityViewModel::setPeriod, "7", {"copied", "cleaned caché"}},
        {&ActivityViewModel::setPeriod, "90", all},
        {&ActivityViewModel::setToolID, "sync", {"old"}},
        {&ActivityViewModel::setOutcome, "failed", {"copied"}},
        {&ActivityViewModel::setTrigger, "scheduled", {"cleaned caché"}},
        {&ActivityViewModel::setComputer, "Ateneo", {"copied"}},
        {&ActivityViewModel::setText, " CACHE", {"cleaned caché"}},
        {&ActivityViewModel::setText, "no such", {}},
    };
    for (const auto& each : cases) {
        (page.get()->*each.set)(each.value);
        EXPECT_TRUE(page->isFiltered());
        load();
        EXPECT_EQ(shown(), each.shown) << each.value;
        page->clearFilter();
        EXPECT_FALSE(page->isFiltered());
        load();
        EXPECT_EQ(shown(), all);
    }
    page->setPeriod("range");
    page->setFrom("2026-11-21");
    load();
    EXPECT_THAT(shown(), ElementsAre("copied", "cleaned caché")) << "open at its end";
    page->setTo("2026-11-21");
    load();
    EXPECT_THAT(shown(), ElementsAre("cleaned caché"));
    page->setFrom("no date");
    load();
    EXPECT_THAT(shown(), ElementsAre("cleaned caché", "old"));
}

TEST_F(Activity, TellsOfTheSelectedRunAndItsFiles) {
    RunRecord run = makeRun("fast-copy", "copied");
    run.details = {{"source", "/home/a\nb"}, {"files", "2"}};
    const Uuid id = add(run);
    desk.session.runFiles().save(id, {{"/x/a\xff", std::nullopt, 15000, "failed", std::nullopt},
                                      {desk.home / "b", "/y/b", std::nullopt, "unheard-of", std::nullopt}});
    open();
    EXPECT_THAT(page->selectedRun(), IsEmpty());
    select(id);
    EXPECT_EQ(selected("summary"), "copied");
    EXPECT_EQ(selected("whenText"), "Today, 12:00");
    EXPECT_EQ(selected("canUndo"), "false");
    EXPECT_EQ(selected("fileCount"), "2");
    const auto facts = page->selectedRun().value("facts").toList();
    EXPECT_THAT(column(facts, "value"), testing::Contains("/home/a\\x0Ab"));
    EXPECT_THAT(column(page->files(), "displayPath"), ElementsAre("/x/a\\xFF", "~/b"));
    EXPECT_THAT(column(page->files(), "sizeText"), ElementsAre("15 kB", ""));
    EXPECT_THAT(column(page->files(), "stateTitle"), ElementsAre("Skipped", "unheard-of"));
    page->clearSelection();
    EXPECT_THAT(page->selectedRun(), IsEmpty());
    EXPECT_EQ(page->files()->rowCount(), 0);

    select(id);
    desk.log().clearAll();
    EXPECT_TRUE(waitFor([&] { return page->selectedRun().isEmpty(); })) << "a run that left the log";
}

TEST_F(Activity, ExportsWhatIsShown) {
    addSome();
    open();
    page->setToolID("sync");
    load();
    const std::string file = desk.home / "runs.csv";
    EXPECT_TRUE(page->exportCsv("file://" + QString::fromStdString(file)));
    const std::string csv = readFile(file);
    EXPECT_THAT(csv, testing::HasSubstr("2026-09-23 12:00:00"));
    EXPECT_THAT(csv, testing::Not(testing::HasSubstr("copied")));
    EXPECT_EQ(page->message(), "");
    const QString first = page->exportPath("~");
    EXPECT_TRUE(page->exportCsv(first));
    EXPECT_NE(page->exportPath("~"), first) << "an export takes no other file's place";
    for (const QString& path :
         {QString("relative.csv"), QString::fromStdString(desk.home / "no/such/folder/x.csv")}) {
        EXPECT_FALSE(page->exportCsv(path));
        EXPECT_THAT(page->message().toStdString(),
                    testing::HasSubstr(path.section(u'/', 0, -2).toStdString()));
    }
}

TEST_F(Activity, PutsARunBack) {
    junk::test::write(desk.home.cache("thing/file"), "12345");
    const auto module = std::make_shared<junk::SystemJunkModule>(desk.home.configuration());
    const ScanReport report = module->scan({});
    const auto done = runClean(*module, report, CleanSelection::all(report, RemovalMethod::trash),
                               Trigger::manual, desk.context.runStores(), desk.session.texts(), {});
    ASSERT_FALSE(junk::test::fs::exists(desk.home.cache("thing")));
    open();
    select(done.record.id);
    EXPECT_EQ(selected("canUndo"), "true");
    page->undo(QString::fromStdString(done.record.id.text()));
    EXPECT_EQ(desk.context.activity().running().size(), 1u);
    ASSERT_TRUE(waitFor([&] {
        return !page->message().isEmpty() && selected("canUndo") == "false" && page->runCount() == 2;
    }));
    EXPECT_EQ(readFile(desk.home.cache("thing/file")), "12345");
    EXPECT_EQ(page->message(), "1 item put back, 5 bytes.");
    EXPECT_THAT(column(page->files(), "state"), ElementsAre("restored"));
    EXPECT_TRUE(waitFor([&] { return desk.context.activity().running().empty(); }));

    page->undo(QString::fromStdString(Uuid::random().text()));
    EXPECT_TRUE(waitFor([&] { return page->message() == "The log knows no such run."; }));
}

} // namespace
} // namespace vh::app::test
