#include "Features/Schedules/view/SchedulesViewModel.h"

#include "Automation/Automation.h"
#include "Core/ScheduleStore.h"
#include "Features/Home/view/HomeViewModel.h"
#include "Features/Schedules/view/NextRunText.h"
#include "Features/Schedules/work/Scheduler.h"
#include "app/AutomationLife.h"
#include "app/ShellViewModel.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

struct Schedules : testing::Test {
    Desk desk;
    AutomationLife life{desk.context};
    ScheduleStore& store = life.automation().schedules();
    SchedulesViewModel model{desk.context, life};

    std::vector<std::string> titles() { return column(model.tasks(), "title"); }
    QString add(const QString& title, const QString& time = "10:00") {
        QVariantMap draft = model.draft({});
        draft["title"] = title;
        draft["time"] = time;
        EXPECT_EQ(model.save({}, draft), "");
        return model.selected()["taskId"].toString();
    }
};

TEST(NextRun, IsToldFromNow) {
    const LocalCalendar calendar("UTC");
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"2026-11-22T11:00:00Z", "Now", "Maintenant"},
        {"2026-11-22T12:00:01Z", "In 1 min", "Dans 1 min"},
        {"2026-11-22T12:59:00Z", "In 59 min", "Dans 59 min"},
        {"2026-11-22T13:00:00Z", "Today at 13:00", "Aujourd’hui à 13:00"},
        {"2026-11-23T00:05:00Z", "Tomorrow at 00:05", "Demain à 00:05"},
        {"2026-11-28T09:00:00Z", "Saturday at 09:00", "Samedi à 09:00"},
        {"2026-11-29T09:00:00Z", "29 Nov at 09:00", "29 nov. à 09:00"},
        {"2027-01-02T09:00:00Z", "2 Jan 2027 at 09:00", "2 janv. 2027 à 09:00"},
    };
    for (const auto& [at, english, french] : cases) {
        const Date next = *parseIso8601(at);
        EXPECT_EQ(nextRunText(Texts(Language::en), calendar, noon, next).toStdString(), english);
        EXPECT_EQ(nextRunText(Texts(Language::fr), calendar, noon, next).toStdString(), french);
    }
}

TEST_F(Schedules, AreMadeByTheForm) {
    struct Case {
        QVariantMap said;
        std::optional<Schedule> schedule;
    };
    const Case cases[] = {
        {{{"time", "9"}}, DailySchedule{9, 0}},
        {{{"time", " 7.05 "}}, DailySchedule{7, 5}},
        {{{"time", "1830"}}, DailySchedule{18, 30}},
        {{{"time", "9 h 15"}}, DailySchedule{9, 15}},
        {{{"time", "24:00"}}, std::nullopt},
        {{{"time", "noon"}}, std::nullopt},
        {{{"kind", "weekly"}, {"time", "3:00"}, {"weekday", "1"}}, WeeklySchedule{1, 3, 0}},
        {{{"kind", "hourly"}, {"hours", "4"}}, HourlySchedule{4}},
        {{{"kind", "hourly"}, {"hours", "0"}}, std::nullopt},
        {{{"kind", "hourly"}, {"hours", "four"}}, std::nullopt},
        {{{"action", "maintenance"}, {"tasks", QStringList{"no-such-task"}}}, std::nullopt},
    };
    for (const Case& test : cases) {
        QVariantMap draft = model.draft({});
        draft.insert(test.said);
        const size_t before = store.tasks().size();
        EXPECT_EQ(model.save({}, draft).isEmpty(), test.schedule.has_value());
        ASSERT_EQ(store.tasks().size(), before + test.schedule.has_value());
        if (test.schedule) {
            const ScheduledTask made = store.tasks().back();
            EXPECT_EQ(made.schedule, *test.schedule);
            EXPECT_EQ(made.nextRun, nextRun(*test.schedule, noon, desk.context.calendar()));
            EXPECT_EQ(made.title, "Clean caches") << "the action's name where none is given";
        }
    }
    QVariantMap draft = model.draft({});
    const QStringList tasks{"flush-dns", "purge-memory"};
    draft.insert(QVariantMap{{"action", "maintenance"}, {"tasks", tasks}});
    EXPECT_EQ(model.save({}, draft), "");
    const ScheduledTask made = store.tasks().back();
    EXPECT_EQ(made.payload, (std::map<std::string, std::string>{{"tasks", "flush-dns,purge-memory"}}));
    EXPECT_EQ(model.draft(qtText(made.id.text()))["tasks"], tasks);
    auto offered = column(model.actionOptions(""), "value");
    EXPECT_THAT(offered, Contains("maintenance"));
    EXPECT_THAT(offered, Not(Contains("backups"))) << "it cannot run yet";
    offered.push_back("backups");
    EXPECT_EQ(column(model.actionOptions("backups"), "value"), offered);
}

TEST_F(Schedules, AreChangedSwitchedRemovedAndBroughtBack) {
    const QString id = add("Caches");
    EXPECT_EQ(column(model.tasks(), "nextText")[0], "Tomorrow at 10:00");
    QVariantMap draft = model.draft(id);
    draft["title"] = "All caches";
    store.change(*Uuid::parse(id.toStdString()), [](ScheduledTask& task) { task.company = "Northern"; });
    EXPECT_EQ(model.save(id, draft), "");
    const ScheduledTask changed = store.tasks().front();
    EXPECT_EQ(changed.title, "All caches");
    EXPECT_EQ(changed.company, "Northern") << "what others wrote meanwhile stays";
    EXPECT_EQ(changed.nextRun, *parseIso8601("2026-11-23T10:00:00Z"));
    EXPECT_EQ(column(model.tasks(), "line")[0], "Clean caches · Every day at 10:00 · set by Northern");

    model.setEnabled(id, false);
    EXPECT_FALSE(store.tasks().front().isEnabled);
    EXPECT_EQ(column(model.tasks(), "nextText")[0], "Off");
    EXPECT_EQ(model.countText(), "1 schedule, 0 on");
    model.remove(id);
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(model.selected(), IsEmpty());
    EXPECT_NE(model.save(id, draft), "") << "gone meanwhile";
    model.undoRemove();
    model.undoRemove();
    EXPECT_THAT(titles(), ElementsAre("All caches"));

    ScheduleStore other(store.fileURL(), desk.context.calendar());
    other.upsert(makeTask("From elsewhere", "nodes", std::string(flowAction), {{"flow", "F"}},
                          HourlySchedule{2}, false, noon, desk.context.calendar()));
    model.refresh();
    EXPECT_THAT(titles(), ElementsAre("All caches", "From elsewhere"));
    EXPECT_THAT(column(model.tasks(), "flowId"), ElementsAre("", "F"));
}

TEST_F(Schedules, AreOrderedByAColumn) {
    add("Évora", "12:30");
    const QString off = add("zoo", "09:00");
    add("Ferrol", "18:00");
    model.setEnabled(off, false);
    const auto ordered = [&](const char* key) {
        model.orderBy(key);
        return titles();
    };
    EXPECT_THAT(titles(), ElementsAre("Évora", "zoo", "Ferrol"));
    EXPECT_THAT(ordered("task"), ElementsAre("Évora", "Ferrol", "zoo"));
    EXPECT_THAT(ordered("task"), ElementsAre("zoo", "Ferrol", "Évora"));
    EXPECT_THAT(ordered("next"), ElementsAre("Évora", "Ferrol", "zoo")) << "what is off comes last";
    store.change(store.tasks()[2].id, [](ScheduledTask& task) { task.lastRun = noon; });
    EXPECT_EQ(ordered("last").front(), "Ferrol");
    EXPECT_EQ(model.order()["key"], "last");
}

TEST_F(Schedules, RunNowAndShowInWhatRuns) {
    const QString id = add("Caches");
    ShellViewModel shell(desk.context);
    QStringList seen;
    QObject::connect(&life, &AutomationLife::changed, &life, [&] {
        for (const QString& title : life.running())
            if (shell.busy()["schedules"] == 1 && shell.busy()["system-junk"] == 1)
                seen << title;
    });
    model.runNow(id);
    ASSERT_TRUE(waitFor([&] { return !model.message().isEmpty() && life.running().isEmpty(); }));
    EXPECT_TRUE(seen.contains("Caches"));
    EXPECT_TRUE(model.message().startsWith("Caches: "));
    EXPECT_EQ(model.runningTitle(), "");
    EXPECT_EQ(column(model.tasks(), "outcome")[0], "success");
    EXPECT_EQ(column(model.tasks(), "nextText")[0], "Tomorrow at 10:00");
    EXPECT_THAT(shell.busy(), IsEmpty());
}

TEST_F(Schedules, SayWhichProcessSeesToThem) {
    EXPECT_FALSE(model.leadText().contains("This window"));
    life.start();
    EXPECT_TRUE(waitFor([&] { return model.leadText().endsWith("This window sees to them."); }));
    Session second;
    AppContext context(
        second, [] { return noon; }, LocalCalendar("UTC"));
    AutomationLife other(context);
    other.start();
    EXPECT_TRUE(SchedulesViewModel(context, other).leadText().contains("Another Varnholt process"));
    QString said;
    QObject::connect(&life, &AutomationLife::said, &life, [&](const QString& text) { said = text; });
    life.openLink("varnholt://nothing");
    EXPECT_NE(said, "");
}

} // namespace
} // namespace vh::app::test
