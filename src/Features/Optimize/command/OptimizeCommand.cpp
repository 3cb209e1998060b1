#include "Automation/Worker.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/RunUndo.h"
#include "Features/Optimize/work/OptimizeRunner.h"
#include "Features/Optimize/work/OptimizeService.h"
#include "HelperKit/MaintenanceTexts.h"
#include "Platform/Blank.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh {

namespace cli {

/// A whole run with what each step did.
struct OptimizeReply {
    RunRecord record;
    std::vector<automation::OptimizeRunner::Step> steps;
};

} // namespace cli

using OptimizeStep = automation::OptimizeRunner::Step;
using OptimizeCheckLine = automation::OptimizeRunner::Check;
using OptimizeStepState = automation::OptimizeRunner::StepState;

template <>
inline constexpr auto
    describe<OptimizeStepState> = enumeration<OptimizeStepState>({{OptimizeStepState::pending, "pending"},
                                                                  {OptimizeStepState::running, "running"},
                                                                  {OptimizeStepState::done, "done"},
                                                                  {OptimizeStepState::warning, "warning"},
                                                                  {OptimizeStepState::failed, "failed"},
                                                                  {OptimizeStepState::skipped, "skipped"}});
template <>
inline constexpr auto describe<OptimizeStep> =
    record(field("action", &OptimizeStep::action), field("payload", &OptimizeStep::payload),
           field("state", &OptimizeStep::state), field("text", &OptimizeStep::text),
           field("startedAt", &OptimizeStep::startedAt), field("duration", &OptimizeStep::duration),
           field("details", &OptimizeStep::details), field("skipped", &OptimizeStep::skipped));
template <>
inline constexpr auto describe<OptimizeCheckLine> = record(field("action", &OptimizeCheckLine::action),
                                                           field("title", &OptimizeCheckLine::title),
                                                           field("detail", &OptimizeCheckLine::detail),
                                                           field("removes", &OptimizeCheckLine::removes));
template <>
inline constexpr auto describe<cli::OptimizeReply> = record(field("record", &cli::OptimizeReply::record),
                                                            field("steps", &cli::OptimizeReply::steps));

} // namespace vh

namespace vh::cli {

namespace {

using automation::OptimizeProfile;
using automation::OptimizeRunner;

/// What the words of `optimize profile` say; what they leave out stays as it is.
struct ProfileOptions {
    bool reset = false;
    std::optional<bool> cleanStorage, cleanPrivacy, smartHealth;
    std::optional<std::string> tasks;
};

Exit check(Context& context) {
    OwnLoop own(context.session);
    const auto checks = [&] {
        ProgressLine line;
        return own.automation().service<automation::OptimizeService>().runner().check(
            OptimizeProfile::load(context.session.defaults()), line.control(context.cancel));
    }();
    if (context.cancel.isCancelled())
        return Exit::cancelled;
    const Texts& texts = context.session.texts();
    if (context.format == Format::json) {
        printJson(checks);
    } else if (checks.empty()) {
        print(texts.text("optimize.summary.no-steps") + "\n");
    } else {
        Table table(
            {{texts.text("cli.column.step")}, {texts.text("cli.column.would-do"), Align::left, true}});
        for (const auto& each : checks)
            table.add({each.title, printable(each.detail)});
        print(table.text(outputWidth()));
    }
    return Exit::done;
}

/// Says of each step that it begins, and how it ended.
class StepsFollower {
public:
    explicit StepsFollower(const Texts& texts) : texts_(texts) {}

    void look(const OptimizeRunner::Snapshot& now) {
        states_.resize(now.steps.size());
        for (size_t i = 0; i < now.steps.size(); ++i)
            if (const auto before = std::exchange(states_[i], now.steps[i].state); before != states_[i]) {
                line_.show(-1, "");
                if (before == OptimizeRunner::StepState::pending && now.steps[i].startedAt)
                    sayBeginning(now.steps[i]); // also when it was over before anybody looked
                if (states_[i] != OptimizeRunner::StepState::running)
                    sayEnd(now.steps[i]);
            }
        if (now.isRunning)
            line_.show(-1, now.detail);
        flush();
    }

private:
    void sayBeginning(const OptimizeRunner::Step& step) {
        print(texts_.text("cli.optimize.begins", {{"title", titleOf(step.action, texts_)}}) + "\n");
    }

    void sayEnd(const OptimizeRunner::Step& step) {
        print(titleOf(step.action, texts_) + texts_.text("common.colon") + printable(step.text) + "\n");
        for (const std::string& detail : step.details)
            if (step.text.find(detail) == std::string::npos)
                print("  " + printable(detail) + "\n");
    }

    const Texts& texts_;
    ProgressLine line_;
    std::vector<OptimizeRunner::StepState> states_;
};

RunRecord runFollowed(Context& context, OwnLoop& own) {
    OptimizeRunner& runner = own.automation().service<automation::OptimizeService>().runner();
    std::optional<StepsFollower> follower;
    if (context.format == Format::people)
        follower.emplace(context.session.texts());
    const auto look = [&] {
        if (follower)
            follower->look(runner.snapshot());
    };
    RunRecord record;
    automation::Worker worker(own.loop());
    worker.run(
        [&, profile = OptimizeProfile::load(context.session.defaults())] {
            record = runner.run(profile, Trigger::manual, {context.cancel, {}});
        },
        [&] { own.finish(); });
    const auto observing = runner.observe(look);
    own.run(context.cancel, [] {});
    if (context.session.runLog().find(record.id))
        look();
    return record;
}

Exit run(Context& context) {
    OwnLoop own(context.session);
    const RunRecord record = runFollowed(context, own);
    if (context.format == Format::json) {
        printJson(OptimizeReply{
            record, own.automation().service<automation::OptimizeService>().runner().snapshot().steps});
        return exitOf(record.outcome);
    }
    print(printable(record.summary) + "\n");
    if (canUndo(context.session.runFiles().rows(record.id)))
        print(context.session.texts().text("cli.optimize.undo-hint", {{"id", record.id.text()}}) + "\n");
    return exitOf(record.outcome);
}

/// The tasks that a list names. Throws UsageError.
std::vector<std::string> tasksOf(const std::string& list, const Texts& texts) {
    const auto offered = helper::listedTasks();
    std::vector<std::string> names;
    for (std::string_view rest = list; !isBlank(rest);) {
        const size_t comma = std::min(rest.find(','), rest.size());
        const std::string name(trimmed(rest.substr(0, comma)));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
        if (name.empty())
            continue;
        const auto task = fromRaw<MaintenanceTask>(name);
        if (!task || !std::ranges::count(offered, *task))
            throw UsageError(texts.text("cli.optimize.no-task", {{"task", printable(name)}}));
        names.push_back(name);
    }
    return names;
}

void printProfile(const OptimizeProfile& profile, const Texts& texts) {
    const auto steps = profile.steps();
    if (steps.empty())
        print(texts.text("optimize.summary.no-steps") + "\n");
    size_t width = 0;
    for (const MaintenanceTask task : profile.tasks())
        width = std::max(width, rawValue(task).size());
    for (const auto& step : steps) {
        print(titleOf(step.action, texts) + "\n");
        if (step.action == ScheduledAction::maintenance)
            for (const MaintenanceTask task : profile.tasks())
                print(fmt::format("  {:<{}}  {}\n", rawValue(task), width,
                                  taskTitle(task, helper::thisSystem(), texts)));
    }
}

Exit profile(Context& context, const ProfileOptions& options) {
    UserDefaults& defaults = context.session.defaults();
    const Texts& texts = context.session.texts();
    OptimizeProfile profile = options.reset ? OptimizeProfile::standard() : OptimizeProfile::load(defaults);
    profile.cleanStorage = options.cleanStorage.value_or(profile.cleanStorage);
    profile.cleanPrivacy = options.cleanPrivacy.value_or(profile.cleanPrivacy);
    profile.smartHealth = options.smartHealth.value_or(profile.smartHealth);
    if (options.tasks)
        profile.maintenanceTasks = tasksOf(*options.tasks, texts);
    if (options.reset || options.cleanStorage || options.cleanPrivacy || options.smartHealth || options.tasks)
        profile.save(defaults);
    if (context.format == Format::json)
        printJson(profile);
    else
        printProfile(profile, texts);
    return Exit::done;
}

} // namespace

void describeOptimize(Verb& noun, CommandLine& line) {
    line.on(noun.verb("check", line.text("cli.optimize.check")), check);
    line.onChange(noun.verb("run", line.text("cli.optimize.run")), run);

    const auto options = std::make_shared<ProfileOptions>();
    Verb& verb = noun.verb("profile", line.text("cli.optimize.profile"));
    verb.option("--clean-storage", &options->cleanStorage, line.text("cli.optimize.clean-storage"));
    verb.option("--clean-privacy", &options->cleanPrivacy, line.text("cli.optimize.clean-privacy"));
    verb.option("--tasks", &options->tasks, line.text("cli.optimize.tasks")).valueName("TASKS");
    verb.option("--smart-health", &options->smartHealth, line.text("cli.optimize.smart-health"));
    verb.option("--reset", &options->reset, line.text("cli.optimize.reset"));
    line.onChange(verb, [options](Context& context) { return profile(context, *options); });
}

} // namespace vh::cli
