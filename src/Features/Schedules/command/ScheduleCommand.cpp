#include "Automation/ScheduledActions.h"

#include "Automation/Automation.h"
#include "Core/Csv.h"
#include "Core/Printable.h"
#include "Core/ScheduleStore.h"
#include "Features/Schedules/command/ScheduleWords.h"
#include "Features/Schedules/work/Scheduler.h"
#include "Features/Schedules/work/SchedulesService.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Consent.h"
#include "cli/Day.h"
#include "cli/NamedThing.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"
#include "cli/Table.h"

namespace vh::cli {

namespace {

constexpr size_t shownOfIdentifier = 8;
constexpr int mostDates = 10'000;

struct AddOptions {
    TaskOptions task;
    bool runIfMissed = false;
};

struct EditOptions {
    std::string word;
    TaskOptions task;
    std::optional<bool> runIfMissed;
};

struct NextOptions {
    ScheduleOptions when;
    std::string after;
    std::string zone;
    int count = 1;
};

ScheduleStore storeOfUser() {
    return ScheduleStore(ScheduleStore::fileOfUser());
}

std::string moment(std::optional<Date> date) {
    return date ? timestamp(*date, LocalCalendar()).substr(0, 16) : "";
}

/// The task that a word names: identifier, its beginning, or title. Complains when it is none or more than one.
std::optional<ScheduledTask> findTask(Context& context, const ScheduleStore& store, const std::string& word) {
    return findNamed(context, store.tasks(), word, {"cli.schedule.unknown", "cli.schedule.ambiguous"},
                     &ScheduledTask::title);
}

/// A command ends with its store, so what could not be written is lost. Throws std::runtime_error.
void failUnlessWritten(const ScheduleStore& store) {
    if (const std::string why = store.trouble(); !why.empty())
        throw std::runtime_error(why);
}

void printTask(const ScheduledTask& task, Context& context) {
    if (context.format == Format::json)
        return printJson(task);
    const Texts& texts = context.session.texts();
    print(fmt::format("{}  {}\n{}\n", task.id.text(), printable(task.title),
                      description(task.schedule, texts)));
    print(task.isEnabled ? texts.text("cli.schedule.next-run", {{"date", moment(task.nextRun)}}) + "\n"
                         : texts.text("cli.schedule.off") + "\n");
}

Exit list(Context& context) {
    const auto tasks = storeOfUser().tasks();
    if (context.format == Format::json) {
        printJson(tasks);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    if (tasks.empty()) {
        print(texts.text("cli.schedule.none") + "\n");
        return Exit::done;
    }
    Table table({{texts.text("cli.column.id")},
                 {texts.text("cli.column.title"), Align::left, true},
                 {texts.text("cli.column.when")},
                 {texts.text("cli.column.next-run")},
                 {texts.text("cli.column.last-run")},
                 {texts.text("cli.column.outcome")}});
    for (const ScheduledTask& task : tasks)
        table.add(
            {task.id.text().substr(0, shownOfIdentifier), printable(task.title),
             description(task.schedule, texts),
             task.isEnabled ? moment(task.nextRun) : texts.text("cli.schedule.off"), moment(task.lastRun),
             task.lastOutcome ? texts.text(fmt::format("outcome.{}", rawValue(*task.lastOutcome))) : ""});
    print(table.text(outputWidth()));
    return Exit::done;
}

Exit add(Context& context, const AddOptions& options) {
    const Texts& texts = context.session.texts();
    if (options.task.action.empty())
        throw UsageError(texts.text("cli.schedule.what"));
    ScheduledTask task =
        makeTask({}, {}, {}, {}, options.task.when.schedule(texts), options.runIfMissed, systemNow(), {});
    options.task.applyTo(task, texts);
    const auto action = fromRaw<ScheduledAction>(task.actionID);
    if (task.toolID.empty())
        task.toolID = action ? task.actionID : "nodes";
    if (task.title.empty())
        task.title = action ? titleOf(*action, texts) : task.toolID;
    ScheduleStore store = storeOfUser();
    store.upsert(task);
    failUnlessWritten(store);
    printTask(task, context);
    return Exit::done;
}

/// Changes the task that the word names, and shows it.
Exit changeTask(Context& context, const std::string& word,
                const std::function<void(ScheduledTask&)>& change) {
    ScheduleStore store = storeOfUser();
    auto task = findTask(context, store, word);
    if (!task)
        return Exit::failed;
    change(*task); // what is said wrong is found out before the file is locked
    store.change(task->id, change);
    failUnlessWritten(store);
    printTask(*task, context);
    return Exit::done;
}

Exit edit(Context& context, const EditOptions& options) {
    return changeTask(context, options.word, [&](ScheduledTask& task) {
        options.task.applyTo(task, context.session.texts());
        task.runIfMissed = options.runIfMissed.value_or(task.runIfMissed);
        if (options.task.when.isGiven())
            task.nextRun = nextRun(task.schedule, systemNow(), {});
    });
}

Exit setEnabled(Context& context, const std::string& word, bool value) {
    return changeTask(context, word, [&](ScheduledTask& task) {
        task.isEnabled = value;
        if (value)
            task.nextRun = nextRun(task.schedule, systemNow(), {});
    });
}

Exit remove(Context& context, const std::string& word) {
    ScheduleStore store = storeOfUser();
    const Texts& texts = context.session.texts();
    const auto task = findTask(context, store, word);
    if (!task)
        return Exit::failed;
    const auto question = texts.text("cli.schedule.ask-remove", {{"title", printable(task->title)}});
    if (const auto exit = unlessAgreed(context, question))
        return *exit;
    store.remove(task->id);
    failUnlessWritten(store);
    if (context.format == Format::json)
        printJson(*task);
    else
        print(texts.text("cli.schedule.removed", {{"title", printable(task->title)}}) + "\n");
    return Exit::done;
}

Exit run(Context& context, const std::string& word) {
    OwnLoop own(context.session);
    automation::Scheduler& scheduler = own.automation().service<automation::SchedulesService>().scheduler();
    const auto task = findTask(context, own.automation().schedules(), word);
    if (!task)
        return Exit::failed;
    {
        ProgressLine line;
        const auto token = scheduler.observe([&] {
            if (scheduler.runningTaskID())
                line.show(-1, scheduler.progressText());
            else if (scheduler.lastRecord())
                own.finish();
        });
        if (!scheduler.runNow(task->id)) {
            const std::string& trouble = scheduler.lastMessage();
            complain(trouble.empty() ? context.session.texts().text("cli.schedule.busy") : trouble);
            return Exit::failed;
        }
        own.run(context.cancel, [&] { scheduler.stopRunning(); });
    }
    const RunRecord& record = *scheduler.lastRecord();
    if (context.format == Format::json)
        printJson(record);
    else
        print(printable(record.summary) + "\n");
    return exitOf(record.outcome);
}

LocalCalendar calendarOf(const std::string& zone) {
    try {
        return zone.empty() ? LocalCalendar() : LocalCalendar(zone);
    } catch (const std::invalid_argument& error) {
        throw UsageError(error.what());
    }
}

/// A moment, the start of a day, or now when nothing is said.
Date momentOf(const std::string& word, const LocalCalendar& calendar) {
    constexpr size_t dayLength = std::string_view("YYYY-MM-DD").size();
    if (word.empty())
        return systemNow();
    if (word.size() == dayLength)
        return parseDay(word, calendar);
    const auto moment = parseIso8601(word);
    if (!moment)
        throw UsageError(printable(word) + ": YYYY-MM-DD[THH:MM:SSZ]");
    return *moment;
}

Exit next(Context& context, const NextOptions& options) {
    const Schedule schedule = options.when.schedule(context.session.texts());
    const LocalCalendar calendar = calendarOf(options.zone);
    const Date after = momentOf(options.after, calendar);
    constexpr Date last =
        std::chrono::sys_days(std::chrono::year(9999) / 12 / 31); // that a date's text can say
    std::vector<Date> dates;
    for (Date date = nextRun(schedule, after, calendar);
         date <= last && dates.size() < static_cast<size_t>(options.count);
         date = nextRun(schedule, date, calendar))
        dates.push_back(date);
    if (context.format == Format::json) {
        printJson(dates);
        return Exit::done;
    }
    for (const Date date : dates)
        print(iso8601(date) + "\n");
    return Exit::done;
}

/// A verb about one task that exists.
Verb& taskVerb(Verb& noun, const CommandLine& line, const char* name, std::string_view help,
               std::string& word) {
    Verb& verb = noun.verb(name, line.text(help));
    verb.argument("TASK", &word, line.text("cli.schedule.task")).required();
    return verb;
}

void describeUpkeep(Verb& noun, CommandLine& line) {
    auto adding = std::make_shared<AddOptions>();
    Verb& addVerb = noun.verb("add", line.text("cli.schedule.add"));
    adding->task.addTo(addVerb, line);
    addVerb.option("--run-if-missed", &adding->runIfMissed, line.text("cli.schedule.run-if-missed"));
    line.onChange(addVerb, [adding](Context& context) { return add(context, *adding); });

    auto editing = std::make_shared<EditOptions>();
    Verb& editVerb = taskVerb(noun, line, "edit", "cli.schedule.edit", editing->word);
    editing->task.addTo(editVerb, line);
    editVerb.option("--run-if-missed", &editing->runIfMissed, line.text("cli.schedule.run-if-missed"));
    line.onChange(editVerb, [editing](Context& context) { return edit(context, *editing); });

    auto removed = std::make_shared<std::string>();
    Verb& removeVerb = taskVerb(noun, line, "remove", "cli.schedule.remove", *removed);
    line.onChange(removeVerb, [removed](Context& context) { return remove(context, *removed); });
}

} // namespace

void describeSchedule(Verb& noun, CommandLine& line) {
    line.on(noun.verb("list", line.text("cli.schedule.list")), list);
    describeUpkeep(noun, line);

    auto word = std::make_shared<std::string>();
    line.onChange(taskVerb(noun, line, "enable", "cli.schedule.enable", *word),
                  [word](Context& context) { return setEnabled(context, *word, true); });
    line.onChange(taskVerb(noun, line, "disable", "cli.schedule.disable", *word),
                  [word](Context& context) { return setEnabled(context, *word, false); });
    line.onChange(taskVerb(noun, line, "run", "cli.schedule.run", *word),
                  [word](Context& context) { return run(context, *word); });

    auto options = std::make_shared<NextOptions>();
    Verb& nextVerb = noun.verb("next", line.text("cli.schedule.next"));
    options->when.addTo(nextVerb, line);
    nextVerb.option("--after", &options->after, line.text("cli.schedule.after")).valueName("ISO-DATE");
    nextVerb.option("--zone", &options->zone, line.text("cli.schedule.zone")).valueName("NAME");
    nextVerb.option("--count", &options->count, line.text("cli.schedule.count"))
        .valueName("N")
        .range(1, mostDates);
    line.on(nextVerb, [options](Context& context) { return next(context, *options); });
    noun.example("varnholt schedule add --action system-junk --daily 21:30");
    noun.example("varnholt schedule add --action optimize --weekly mon@09:00 --run-if-missed");
    noun.example("varnholt schedule next --every-hours 12 --count 5");
}

} // namespace vh::cli
