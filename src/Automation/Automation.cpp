#include "Automation/Automation.h"

#include "Automation/AutomationDoor.h"
#include "Automation/FolderNews.h"
#include "Automation/ScheduledActions.h"
#include "Automation/ScriptLibrary.h"
#include "Automation/Worker.h"
#include "Core/Codec.h"
#include "Core/RunLog.h"
#include "Core/ScheduleStore.h"
#include "Core/Secrets.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/FlowTriggers.h"
#include "Features/Flows/work/NodesExecutor.h"
#include "Features/Flows/work/NodesRunner.h"
#include "Features/FollowUps/work/RunFollowUps.h"
#include "Features/Optimize/work/OptimizeRunner.h"
#include "Features/Schedules/work/Scheduler.h"
#include "Mail/MailSender.h"
#include "Platform/Desktop.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/InstanceDoor.h"
#include "Platform/SystemError.h"
#include "Tools/FolderSync/work/SyncRunner.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"

#include <chrono>
#include <utility>

namespace vh::automation {

namespace {

constexpr std::chrono::seconds tryAgain{2};

using OnRecord = std::function<void(const RunRecord&)>;

} // namespace

/// The parts stand in the order in which they need each other, so that they go in the opposite one.
struct Automation::State {
    explicit State(AutomationWorld w) : world(std::move(w)), folder(world.folders.data + "/Varnholt") {}

    AutomationWorld world;
    const std::string folder;
    std::optional<FileLock> lead; ///< let go of last, when nothing runs any more

    std::unique_ptr<SecretStore> secrets;
    std::unique_ptr<mail::MailSender> mail;
    std::unique_ptr<RunFollowUps> followUps;
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<SyncRunner> sync;
    std::unique_ptr<ScriptLibrary> scripts;
    std::unique_ptr<ScheduleStore> schedules;
    std::unique_ptr<ScheduledActions> actions;
    std::unique_ptr<OptimizeRunner> optimize; ///< comes with actions
    std::unique_ptr<flows::NodesStore> flows;
    FlowOutpost outpost;
    std::unique_ptr<NodesExecutor> executor;
    std::unique_ptr<NodesRunner> runner;
    std::unique_ptr<Scheduler> scheduler;
    std::unique_ptr<FlowTriggers> triggers;
    Worker asking{world.loop}; ///< who leads may be slow to answer

    std::shared_ptr<OnRecord> onRecord = std::make_shared<OnRecord>();
    std::function<void()> onLeading;
    std::string trouble;
    bool isAttached = false;
    std::unique_ptr<FolderNews> news;
    std::unique_ptr<InstanceDoor> door;
    MainLoop::Token trying;
};

namespace {

template <class Pointer, class Make>
auto& made(Pointer& part, Make make) {
    if (!part)
        part = make();
    return *part;
}

} // namespace

Automation::Automation(AutomationWorld world) : state_(std::make_unique<State>(std::move(world))) {}

Automation::~Automation() {
    State& s = *state_;
    s.trying.reset();
    s.door.reset();
    s.news.reset();
    s.triggers.reset();
    if (s.runner)
        s.runner->setOnFinished({});
    s.scheduler.reset();
    s.runner.reset();
    if (s.isAttached)
        s.world.runs.log.setOnRecord({});
}

ScheduleStore& Automation::schedules() {
    return made(state_->schedules, [&] {
        return std::make_unique<ScheduleStore>(ScheduleStore::fileOfUser(), state_->world.calendar);
    });
}

Scheduler& Automation::scheduler() {
    return made(state_->scheduler, [&] {
        runner(); // a task may be a flow
        return std::make_unique<Scheduler>(state_->world, schedules(), actions());
    });
}

ScheduledActions& Automation::actions() {
    return made(state_->actions, [&] {
        State& s = *state_;
        auto actions = std::make_unique<ScheduledActions>(s.world);
        s.optimize = std::make_unique<OptimizeRunner>(s.world, *actions);
        actions->setRunOptimize([&defaults = s.world.defaults, runner = s.optimize.get()](
                                    Trigger trigger, const JobControl& control, const RunDetails& details) {
            return runner->run(OptimizeProfile::load(defaults), trigger, control, details);
        });
        actions->setRunSync([&runner = sync()](const sync::SyncPair& pair, Trigger trigger,
                                               const RunDetails& details, const JobControl& control) {
            return runner.runScheduled(pair, trigger, details, control);
        });
        return actions;
    });
}

OptimizeRunner& Automation::optimize() {
    actions();
    return *state_->optimize;
}

SyncRunner& Automation::sync() {
    return made(state_->sync, [&] { return std::make_unique<SyncRunner>(state_->world, desktop()); });
}

flows::NodesStore& Automation::flows() {
    return made(state_->flows, [&] {
        return std::make_unique<flows::NodesStore>(flows::NodesStore::folderOfUser(), schedules(),
                                                   state_->world.clock, state_->world.calendar);
    });
}

NodesRunner& Automation::runner() {
    return made(state_->runner, [&] {
        State& s = *state_;
        s.executor =
            std::make_unique<NodesExecutor>(s.world, actions(), scripts(), mail(), desktop(), s.outpost);
        auto runner = std::make_unique<NodesRunner>(s.world, flows(), *s.executor, mail());
        runner->setOnFinished([this](const flows::Flow& flow, flows::FlowNodeOutcome outcome,
                                     const std::vector<Uuid>& chain) {
            if (isLeading())
                triggers().finished(flow, outcome, chain);
            else
                state_->asking.run([ended = FlowEnded{flow.id, outcome, chain}] { (void)askLeader(ended); },
                                   [] {});
        });
        actions().setRunFlow([made = runner.get()](const ScheduledTask& task, const JobControl& control) {
            return made->runScheduled(task, control.cancel);
        });
        return runner;
    });
}

FlowTriggers& Automation::triggers() {
    return made(state_->triggers,
                [&] { return std::make_unique<FlowTriggers>(state_->world, flows(), runner(), desktop()); });
}

ScriptLibrary& Automation::scripts() {
    return made(state_->scripts,
                [] { return std::make_unique<ScriptLibrary>(ScriptLibrary::folderOfUser()); });
}

SecretStore& Automation::secrets() {
    return made(state_->secrets, [&] { return openSecretStore(state_->folder + "/secrets.json"); });
}

mail::MailSender& Automation::mail() {
    return made(state_->mail, [&] {
        const AutomationWorld& world = state_->world;
        return std::make_unique<mail::MailSender>(world.defaults, secrets(), world.runs.log, world.texts);
    });
}

RunFollowUps& Automation::followUps() {
    return made(state_->followUps, [&] { return std::make_unique<RunFollowUps>(state_->world, mail()); });
}

Desktop& Automation::desktop() {
    return made(state_->desktop, [] { return openDesktop(); });
}

void Automation::attach() {
    State& s = *state_;
    if (std::exchange(s.isAttached, true))
        return;
    s.world.runs.log.setOnRecord([&followUps = followUps(), told = std::weak_ptr(s.onRecord),
                                  &loop = s.world.loop](const RunRecord& record) {
        followUps.take(record);
        loop.post([told, record] {
            if (const auto alive = told.lock(); alive && *alive)
                (*alive)(record);
        });
    });
    try {
        runner().recordInterrupted();
    } catch (const SystemError& error) {
        s.trouble = error.what(); // they are found at the next start
    }
}

void Automation::setOnRecord(std::function<void(const RunRecord&)> f) {
    *state_->onRecord = std::move(f);
}

void Automation::lead() {
    State& s = *state_;
    if (s.trying || isLeading())
        return;
    attach();
    s.news = std::make_unique<FolderNews>(s.world.loop, flows().folder(), [this] { flows().load(); });
    s.trying = s.world.loop.every(tryAgain, [this] { tryToLead(); });
    tryToLead();
}

void Automation::tryToLead() {
    State& s = *state_;
    try {
        if (!s.lead) {
            makeFolders(s.folder);
            FileLock lock = FileLock::tryLock(leadLockOf(s.world.folders));
            s.trouble.clear();
            if (!lock)
                return;
            s.lead.emplace(std::move(lock));
            beginToLead();
        }
        s.door = InstanceDoor::open(s.world.loop, doorName,
                                    [this](const std::string& request) { return answer(request); });
        s.trouble.clear();
        if (s.door)
            s.trying.reset();
    } catch (const SystemError& error) {
        s.trouble = error.what();
    }
}

void Automation::beginToLead() {
    scheduler().start();
    triggers().start();
    sync().start();
    if (state_->onLeading)
        state_->onLeading();
}

bool Automation::isLeading() const {
    return state_->lead.has_value();
}

void Automation::setOnLeading(std::function<void()> f) {
    state_->onLeading = std::move(f);
}

const std::string& Automation::trouble() const {
    return state_->trouble;
}

std::string Automation::answer(const std::string& request) {
    DoorReply reply;
    try {
        const auto wanted = decodeJson<DoorRequest>(request);
        if (const auto* link = std::get_if<OpenLink>(&wanted)) {
            reply.refusal = openHere(link->url);
        } else if (const auto* ended = std::get_if<FlowEnded>(&wanted)) {
            if (const flows::Flow* flow = flows().anyFlow(ended->flow))
                triggers().finished(flows::Flow(*flow), ended->outcome, ended->chain);
        }
    } catch (const DecodeError& error) {
        reply.refusal = error.what();
    }
    return encodeJson(reply);
}

std::optional<std::string> Automation::openLink(const std::string& url) {
    if (!isLeading())
        if (const auto reply = askLeader(OpenLink{url}))
            return reply->refusal;
    return openHere(url);
}

std::optional<std::string> Automation::openHere(const std::string& url) {
    const Texts texts = state_->world.texts();
    const auto id = flowOfLink(url);
    if (!id)
        return texts.text("nodes.link.unknown", {{"url", url}});
    flows().load();
    const auto refusal = runner().runFromOutside(*id, texts.text("nodes.event.link"));
    if (!refusal)
        return std::nullopt;
    try {
        desktop().notify(texts.text("sidebar.varnholt") + " – " + texts.text("sidebar.nodes"), *refusal);
    } catch (const std::runtime_error&) {
        // Nobody sits before this computer; who asked gets the answer.
    }
    return refusal;
}

} // namespace vh::automation
