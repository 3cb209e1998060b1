#include "Core/Printable.h"
#include "HelperKit/MaintenanceTexts.h"
#include "HelperKit/MaintenanceWork.h"
#include "Tools/Maintenance/work/MaintenanceJob.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <fmt/format.h>

namespace vh {

namespace cli {

struct TaskReply {
    std::string rawValue;
    std::string title;
    bool requiresRoot = false;
    bool isSlow = false;
    std::vector<helper::MaintenanceCommand> commands; ///< empty when this machine cannot do it
    std::optional<std::string> blocker;               ///< why it cannot
};

struct TaskRunReply {
    std::string rawValue;
    Outcome outcome = Outcome::success;
    std::string summary;
    std::string output;
    Uuid runID;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::TaskReply> = record(field("rawValue", &cli::TaskReply::rawValue),
                                                        field("title", &cli::TaskReply::title),
                                                        field("requiresRoot", &cli::TaskReply::requiresRoot),
                                                        field("isSlow", &cli::TaskReply::isSlow),
                                                        field("commands", &cli::TaskReply::commands),
                                                        field("blocker", &cli::TaskReply::blocker));

template <>
inline constexpr auto describe<cli::TaskRunReply> = record(field("rawValue", &cli::TaskRunReply::rawValue),
                                                           field("outcome", &cli::TaskRunReply::outcome),
                                                           field("summary", &cli::TaskRunReply::summary),
                                                           field("output", &cli::TaskRunReply::output),
                                                           field("runID", &cli::TaskRunReply::runID));

} // namespace vh

namespace vh::cli {

namespace {

using helper::MaintenanceSystem;
using helper::MaintenanceWork;

struct MaintenanceOptions {
    std::string system;
    std::vector<std::string> tasks;
};

std::string namesOf(std::span<const MaintenanceTask> tasks) {
    std::vector<std::string_view> names;
    for (const MaintenanceTask each : tasks)
        names.push_back(rawValue(each));
    return fmt::format("{}", fmt::join(names, ", "));
}

TaskReply replyOf(MaintenanceTask task, MaintenanceSystem system, const helper::MaintenanceFacts& facts,
                  const Texts& texts) {
    helper::MaintenancePlan plan = maintenancePlan(task, system, facts);
    TaskReply reply{std::string(rawValue(task)),
                    taskTitle(task, system, texts),
                    requiresRoot(task, system),
                    isSlow(task, system),
                    {},
                    {}};
    if (!plan.isPossible())
        reply.blocker = blockerText(plan, texts);
    reply.commands = std::move(plan.commands);
    return reply;
}

std::string needsOf(const TaskReply& task, const Texts& texts) {
    std::vector<std::string> needs;
    if (task.requiresRoot)
        needs.push_back(texts.text("cli.maintenance.needs.root"));
    if (task.isSlow)
        needs.push_back(texts.text("cli.maintenance.needs.time"));
    return fmt::format("{}", fmt::join(needs, ", "));
}

Exit listTasks(Context& context, const MaintenanceOptions& options) {
    const Texts& texts = context.session.texts();
    const MaintenanceSystem system =
        options.system.empty() ? helper::thisSystem() : *fromRaw<MaintenanceSystem>(options.system);
    const helper::MaintenanceFacts facts = helper::factsOfThisMachine();
    std::vector<TaskReply> tasks;
    for (const MaintenanceTask task : helper::listedTasks())
        tasks.push_back(replyOf(task, system, facts, texts));
    if (context.format == Format::json) {
        printJson(tasks);
        return Exit::done;
    }
    Table table({{texts.text("cli.maintenance.column.task")},
                 {texts.text("cli.column.title")},
                 {texts.text("cli.maintenance.column.needs")},
                 {"", Align::left, true}});
    for (const TaskReply& task : tasks)
        table.add({task.rawValue, task.title, needsOf(task, texts), task.blocker.value_or("")});
    print(table.text(outputWidth()));
    return Exit::done;
}

std::vector<MaintenanceTask> tasksNamed(const std::vector<std::string>& words, const Texts& texts) {
    const auto listed = helper::listedTasks();
    std::vector<MaintenanceTask> tasks;
    for (const std::string& word : words) {
        const auto task = fromRaw<MaintenanceTask>(word);
        if (!task || std::ranges::find(listed, *task) == listed.end())
            throw UsageError(texts.text("cli.maintenance.no-task",
                                        {{"word", printable(word)}, {"tasks", namesOf(listed)}}));
        tasks.push_back(*task);
    }
    return tasks;
}

void printLog(std::string_view output) {
    while (!output.empty()) {
        const size_t end = std::min(output.find('\n'), output.size());
        print("  " + printable(output.substr(0, end)) + "\n");
        output.remove_prefix(std::min(end + 1, output.size()));
    }
}

/// Says of every task that cannot run why, before any is started.
bool canAllRun(Context& context, const MaintenanceWork& work, const std::vector<MaintenanceTask>& tasks) {
    bool all = true;
    for (const MaintenanceTask task : tasks) {
        const std::string blocker = work.blocker(task, context.session.texts());
        if (blocker.empty())
            continue;
        complain(fmt::format("{}: {}", rawValue(task), blocker));
        all = false;
    }
    return all;
}

TaskRunReply runOne(Context& context, const MaintenanceWork& work, MaintenanceTask task) {
    const auto done = [&] {
        ProgressLine line;
        return automation::runMaintenance(task, work, context.session.runLog(), Trigger::manual,
                                          context.session.texts(), line.control(context.cancel));
    }();
    if (context.format != Format::json) {
        print(taskTitle(task, work.system(), context.session.texts()) + "\n");
        printLog(done.output);
        print(printable(done.record.summary) + "\n");
        flush();
    }
    return {std::string(rawValue(task)), done.record.outcome, done.record.summary, done.output,
            done.record.id};
}

Exit runTasks(Context& context, const MaintenanceOptions& options) {
    const auto tasks = tasksNamed(options.tasks, context.session.texts());
    const MaintenanceWork work(&context.session.helper());
    if (!canAllRun(context, work, tasks))
        return Exit::failed;
    std::vector<TaskRunReply> replies;
    Exit exit = Exit::done;
    for (const MaintenanceTask task : tasks) {
        if (context.cancel.isCancelled()) {
            exit = Exit::cancelled;
            break;
        }
        replies.push_back(runOne(context, work, task));
        if (const Exit one = exitOf(replies.back().outcome); one != Exit::done)
            exit = one;
    }
    if (context.format == Format::json)
        printJson(replies);
    return exit;
}

} // namespace

void describeMaintenance(Verb& noun, CommandLine& line) {
    const auto options = std::make_shared<MaintenanceOptions>();
    Verb& list = noun.verb("list", line.text("cli.maintenance.list"));
    list.option("--system", &options->system, line.text("cli.maintenance.system")).oneOf({"macos", "linux"});
    line.on(list, [options](Context& context) { return listTasks(context, *options); });

    Verb& run = noun.verb("run", line.text("cli.maintenance.run"));
    run.argument("TASK", &options->tasks, line.text("cli.maintenance.task")).required();
    line.onChange(run, [options](Context& context) { return runTasks(context, *options); });
    noun.example("varnholt maintenance run clear-font-caches reset-quicklook");
}

} // namespace vh::cli
