#include "Automation/Automation.h"

#include "Automation/LeaderMessages.h"
#include "Automation/Offer.h"
#include "Automation/ScheduledActions.h"
#include "Automation/ScriptLibrary.h"
#include "Automation/Worker.h"
#include "Core/Codec.h"
#include "Core/RunLog.h"
#include "Core/ScheduleStore.h"
#include "Core/Secrets.h"
#include "Mail/MailSender.h"
#include "Platform/Desktop.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/InstanceSocket.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vh::automation {

namespace {

constexpr std::chrono::seconds tryAgain{2};

using OnRecord = std::function<void(const RunRecord&)>;

struct Made {
    std::type_index type;
    std::unique_ptr<Service> service;
    std::shared_ptr<void> observing;
};

} // namespace

/// The parts stand in the order in which they need each other, so that they go in the opposite one.
struct Automation::State {
    explicit State(AutomationDependencies w)
        : dependencies(std::move(w)), folder(dependencies.folders.data + "/Varnholt") {}
    AutomationDependencies dependencies;
    const std::string folder;
    std::optional<FileLock> lead; ///< let go of last, when nothing runs any more

    std::unique_ptr<SecretStore> secrets;
    std::unique_ptr<mail::MailSender> mail;
    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<ScriptLibrary> scripts;
    std::unique_ptr<ScheduleStore> schedules;
    std::unique_ptr<ScheduledActions> actions;
    Worker asking{dependencies.loop}; ///< who leads may be slow to answer
    Observers<> observers;
    std::vector<Made> services;
    bool areServicesMade = false;

    std::shared_ptr<OnRecord> onRecord = std::make_shared<OnRecord>();
    std::function<void()> onLeading;
    std::string trouble;
    bool isAttached = false;
    std::unique_ptr<InstanceSocket> socket;
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

std::string leadLockOf(const Folders& folders) {
    return folders.data + "/Varnholt/automation.lock";
}

Automation::Automation(AutomationDependencies dependencies)
    : state_(std::make_unique<State>(std::move(dependencies))) {}

Automation::~Automation() {
    State& s = *state_;
    s.trying.reset();
    s.socket.reset();
    // The last one made may stand on those before it. What it still records while it goes reaches none.
    if (s.isAttached)
        s.dependencies.runs.log.setOnRecord({});
    while (!s.services.empty())
        s.services.pop_back();
}

const AutomationDependencies& Automation::dependencies() const {
    return state_->dependencies;
}

Service& Automation::service(std::type_index type, MakeService make) {
    actions(); // made with those of the product, of which this may be one
    auto& services = state_->services;
    if (const auto found = std::ranges::find(services, type, &Made::type); found != services.end())
        return *found->service;
    std::unique_ptr<Service> fresh = make(*this);
    auto observing = fresh->observe([this] { state_->observers.tell(); });
    services.push_back({type, std::move(fresh), std::move(observing)});
    return *services.back().service;
}

void Automation::makeServices() {
    if (std::exchange(state_->areServicesMade, true))
        return;
    for (const Offer* offer : state_->dependencies.offers)
        if (offer->service)
            offer->service(*this);
}

ScheduledActions& Automation::actions() {
    if (!state_->actions) {
        state_->actions = std::make_unique<ScheduledActions>(state_->dependencies);
        makeServices(); // they provide some of them
    }
    return *state_->actions;
}

ScheduleStore& Automation::schedules() {
    return made(state_->schedules, [&] {
        return std::make_unique<ScheduleStore>(ScheduleStore::fileOfUser(), state_->dependencies.calendar);
    });
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
        const AutomationDependencies& dependencies = state_->dependencies;
        return std::make_unique<mail::MailSender>(dependencies.defaults, secrets(), dependencies.runs.log,
                                                  dependencies.texts);
    });
}

Desktop& Automation::desktop() {
    return made(state_->desktop, [] { return openDesktop(); });
}

std::vector<RunningWork> Automation::running() const {
    std::vector<RunningWork> all;
    for (const Made& each : state_->services)
        for (RunningWork& work : each.service->running())
            all.push_back(std::move(work));
    return all;
}

std::vector<std::string> Automation::troubles() {
    std::vector<std::string> all;
    if (!state_->trouble.empty())
        all.push_back(state_->trouble);
    if (isLeading())
        for (const Made& each : state_->services)
            for (std::string& text : each.service->troubles())
                all.push_back(std::move(text));
    return all;
}

std::shared_ptr<void> Automation::observe(std::function<void()> f) {
    return state_->observers.add(std::move(f));
}

void Automation::stop() {
    for (const Made& each : state_->services)
        each.service->stop();
}

void Automation::finish(std::chrono::milliseconds limit) {
    for (const Made& each : state_->services)
        each.service->finish(limit);
}

void Automation::attach() {
    State& s = *state_;
    if (std::exchange(s.isAttached, true))
        return;
    actions();
    std::vector<Service*> services;
    for (const Made& each : s.services)
        services.push_back(each.service.get());
    s.dependencies.runs.log.setOnRecord(
        [services, told = std::weak_ptr(s.onRecord), &loop = s.dependencies.loop](const RunRecord& record) {
            for (Service* each : services)
                each->take(record);
            loop.post([told, record] {
                if (const auto alive = told.lock(); alive && *alive)
                    (*alive)(record);
            });
        });
    try {
        for (Service* each : services)
            each->attach();
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
    for (const Made& each : s.services)
        each.service->follow();
    s.trying = s.dependencies.loop.every(tryAgain, [this] { tryToLead(); });
    tryToLead();
}

void Automation::tryToLead() {
    State& s = *state_;
    try {
        if (!s.lead) {
            makeFolders(s.folder);
            FileLock lock = FileLock::tryLock(leadLockOf(s.dependencies.folders));
            s.trouble.clear();
            if (!lock)
                return;
            s.lead.emplace(std::move(lock));
            beginToLead();
        }
        s.socket = InstanceSocket::open(s.dependencies.loop, leaderSocket,
                                        [this](const std::string& request) { return answer(request); });
        s.trouble.clear();
        if (s.socket)
            s.trying.reset();
    } catch (const SystemError& error) {
        s.trouble = error.what();
    }
}

void Automation::beginToLead() {
    for (const Made& each : state_->services)
        each.service->lead();
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

void Automation::tellLeader(const Service& service, std::string message) {
    state_->asking.run([request = ServiceMessage{std::string(service.name()),
                                                 std::move(message)}] { (void)askLeader(request); },
                       [] {});
}

std::string Automation::answer(const std::string& request) {
    LeaderReply reply;
    try {
        const auto wanted = decodeJson<LeaderRequest>(request);
        if (const auto* link = std::get_if<OpenLink>(&wanted))
            reply.refusal = openHere(link->url);
        else if (const auto* told = std::get_if<ServiceMessage>(&wanted))
            for (const Made& each : state_->services)
                if (each.service->name() == told->service)
                    each.service->hear(told->message);
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
    makeServices();
    const auto& services = state_->services;
    const auto taker =
        std::ranges::find_if(services, [&](const Made& each) { return each.service->takesLink(url); });
    if (taker == services.end())
        return state_->dependencies.texts().text("automation.link.unknown", {{"url", url}});
    return taker->service->openLink(url);
}

} // namespace vh::automation
