#include "HelperKit/HelperClient.h"

#include "Core/Codec.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "HelperKit/HelperConnection.h"
#include "HelperKit/HelperProtocol.h"
#include "Platform/Blank.h"
#include "Platform/ServiceHost.h"

#include <map>
#include <thread>

namespace vh::helper {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Kind = HelperClientError::Kind;
using Result = MaintenanceRunner::Result;
using Status = HelperRegistrationStatus;

constexpr std::string_view registeredBuildKey = "helper.registeredBuild";

/// How long the work of each call may take.
namespace limits {
constexpr seconds ping{10};
constexpr seconds removal{300};
constexpr seconds sizing{300};
constexpr seconds jobStart{30};
constexpr seconds jobStatus{30};
constexpr seconds install{3660};
} // namespace limits

/// Typing a password is no work: where the authority asks, the time that it gives a person comes on top.
milliseconds deadlineOf(const ServiceMethod& method, milliseconds work) {
    return method.action.empty() ? work : work + ServiceRules().authorityLimit;
}

bool mayRepeat(const ServiceMethod& method, Kind kind) {
    return method.name != methods::ping.name && (kind == Kind::connectionFailed || kind == Kind::timeout);
}

} // namespace

struct HelperClient::State {
    explicit State(Dependencies given) : dependencies(std::move(given)), connection(dependencies.openLink) {}

    Dependencies dependencies;
    HelperConnection connection;
    std::mutex repairing; ///< held while something is repaired or registered; taken before mutex
    std::mutex mutex;     ///< of what follows
    std::optional<Status> status;
    unsigned repairs = 0;
    std::string lastPing;
    std::string lastError;
    std::map<std::string, std::shared_ptr<ServiceLink>> jobs; ///< each would end with its link

    Status known();
    Status refresh();
    unsigned repairsSoFar();
    void setLastError(const std::string& text);
    void requireEnabled();

    HelperConnection::Answer callOnce(const ServiceMethod& method, milliseconds work,
                                      const ServiceValues& arguments, const CancelToken& cancel);
    HelperConnection::Answer call(const ServiceMethod& method, milliseconds work,
                                  const ServiceValues& arguments, const CancelToken& cancel = {});
    Result callForResult(const ServiceMethod& method, milliseconds work, const ServiceValue& argument,
                         Kind failure, const CancelToken& cancel = {});

    std::string ping(const CancelToken& cancel = {});
    bool answers(const CancelToken& cancel = {});
    void repairAfter(unsigned repairsBefore, const CancelToken& cancel);
    void addAnew();
    void noteAdded();
};

Status HelperClient::State::refresh() {
    const Status now = dependencies.registration->status();
    const std::lock_guard lock(mutex);
    status = now;
    return now;
}

Status HelperClient::State::known() {
    {
        const std::lock_guard lock(mutex);
        if (status)
            return *status;
    }
    return refresh();
}

unsigned HelperClient::State::repairsSoFar() {
    const std::lock_guard lock(mutex);
    return repairs;
}

void HelperClient::State::setLastError(const std::string& text) {
    const std::lock_guard lock(mutex);
    lastError = text;
}

/// A helper that was not there may have been registered by another process since.
void HelperClient::State::requireEnabled() {
    if (known() == Status::enabled)
        return;
    if (const Status now = refresh(); now != Status::enabled)
        throw HelperClientError::unavailable(now);
}

HelperConnection::Answer HelperClient::State::callOnce(const ServiceMethod& method, milliseconds work,
                                                       const ServiceValues& arguments,
                                                       const CancelToken& cancel) {
    const milliseconds deadline = deadlineOf(method, work);
    return connection.call(method, dependencies.limit ? dependencies.limit(deadline) : deadline, arguments,
                           cancel);
}

HelperConnection::Answer HelperClient::State::call(const ServiceMethod& method, milliseconds work,
                                                   const ServiceValues& arguments,
                                                   const CancelToken& cancel) {
    requireEnabled();
    const unsigned repairsBefore = repairsSoFar();
    try {
        return callOnce(method, work, arguments, cancel);
    } catch (const HelperClientError& error) {
        if (!mayRepeat(method, error.kind))
            throw;
    }
    repairAfter(repairsBefore, cancel);
    if (cancel.isCancelled())
        throw LeftToHelper();
    try {
        return callOnce(method, work, arguments, cancel);
    } catch (const HelperClientError& error) {
        if (!mayRepeat(method, error.kind))
            throw;
        throw HelperClientError(Kind::restarted, error.words);
    }
}

Result HelperClient::State::callForResult(const ServiceMethod& method, milliseconds work,
                                          const ServiceValue& argument, Kind failure,
                                          const CancelToken& cancel) {
    const ServiceValues values = call(method, work, {argument}, cancel).values;
    Result result{std::get<bool>(values[0]), std::get<std::string>(values[1])};
    if (!result.succeeded && isBlank(result.output))
        throw HelperClientError(failure, std::string(method.name));
    return result;
}

std::string HelperClient::State::ping(const CancelToken& cancel) {
    std::string answer;
    try {
        answer = std::get<std::string>(call(methods::ping, limits::ping, {}, cancel).values[0]);
    } catch (const HelperClientError&) {
        const std::lock_guard lock(mutex);
        lastPing.clear();
        throw;
    }
    const std::lock_guard lock(mutex);
    lastPing = answer;
    return answer;
}

bool HelperClient::State::answers(const CancelToken& cancel) {
    try {
        ping(cancel);
        return true;
    } catch (const HelperClientError&) {
        return false;
    }
}

/// For a call that failed, so without asking: whoever waits for it may not be there, as in a flow at night. One repair
/// serves all calls that failed before it.
void HelperClient::State::repairAfter(unsigned repairsBefore, const CancelToken& cancel) {
    const std::lock_guard lock(repairing);
    if (repairsSoFar() != repairsBefore)
        return;
    connection.drop();
    if (!answers(cancel) && !dependencies.registration->mustAsk()) {
        try {
            addAnew();
        } catch (const std::exception&) {
            // The call that follows tells what is wrong.
        }
    }
    const std::lock_guard counting(mutex);
    ++repairs;
}

/// A person who must be asked is asked once: adding replaces what is there.
void HelperClient::State::addAnew() {
    ServiceRegistration& registration = *dependencies.registration;
    if (!registration.mustAsk() && registration.status() == Status::enabled) {
        registration.remove();
        std::this_thread::sleep_for(dependencies.repairPause);
    }
    registration.add();
    noteAdded();
}

void HelperClient::State::noteAdded() {
    connection.drop();
    dependencies.defaults.set(registeredBuildKey, dependencies.build);
    setLastError({});
    refresh();
}

HelperClient::HelperClient(Dependencies dependencies)
    : state_(std::make_unique<State>(std::move(dependencies))) {}
HelperClient::~HelperClient() = default;

Status HelperClient::status() const {
    return state_->known();
}

Status HelperClient::refreshStatus() {
    return state_->refresh();
}

bool HelperClient::mustAsk() const {
    return state_->dependencies.registration->mustAsk();
}

std::optional<std::string> HelperClient::registeredBuild() const {
    return state_->dependencies.defaults.get<std::string>(registeredBuildKey);
}

std::string HelperClient::lastPing() const {
    const std::lock_guard lock(state_->mutex);
    return state_->lastPing;
}

std::string HelperClient::lastError() const {
    const std::lock_guard lock(state_->mutex);
    return state_->lastError;
}

void HelperClient::registerHelper() {
    const std::lock_guard lock(state_->repairing);
    state_->dependencies.registration->add();
    state_->noteAdded();
}

void HelperClient::unregisterHelper() {
    const std::lock_guard lock(state_->repairing);
    state_->dependencies.registration->remove();
    state_->connection.drop();
    state_->dependencies.defaults.remove(registeredBuildKey);
    state_->setLastError({});
    state_->refresh();
}

void HelperClient::repair() {
    const std::lock_guard lock(state_->repairing);
    state_->connection.drop();
    state_->setLastError({});
    const std::string& build = state_->dependencies.build;
    const bool isCurrent = state_->refresh() == Status::enabled && registeredBuild().value_or(build) == build;
    if (isCurrent && state_->answers())
        return;
    state_->addAnew();
    state_->ping();
}

void HelperClient::refreshRegistrationAfterUpdate(const Texts& texts) {
    State& state = *state_;
    const auto registered = registeredBuild();
    if (!registered || registered == state.dependencies.build || state.refresh() != Status::enabled)
        return;
    try {
        if (!state.dependencies.registration->mustAsk())
            return registerHelper();
    } catch (const std::exception&) {
        // Said below: the helper of the older build is still there.
    }
    state.setLastError(texts.text("helper-error.reregister-failed"));
}

std::string HelperClient::pingOrThrow() {
    return state_->ping();
}

std::string HelperClient::ping() {
    return state_->answers() ? lastPing() : std::string();
}

void HelperClient::removeAllowedItem(const std::string& path) {
    const auto answer = state_->call(methods::removeAllowedItem, limits::removal, {ServiceBytes{path}});
    if (!std::get<bool>(answer.values[0]))
        throw HelperClientError(Kind::refusedRemoval, path);
}

int64_t HelperClient::sizeOfAllowedDirectory(const std::string& path) {
    const auto answer = state_->call(methods::sizeOfAllowedDirectory, limits::sizing, {ServiceBytes{path}});
    return std::get<int64_t>(answer.values[0]);
}

Result HelperClient::runMaintenanceTask(MaintenanceTask task, const CancelToken& cancel) {
    return state_->callForResult(methods::runMaintenanceTask, timeLimit(task, thisSystem()),
                                 std::string(rawValue(task)), Kind::taskFailed, cancel);
}

std::string HelperClient::startDeviceJob(const DeviceJobSpec& spec) {
    const auto answer =
        state_->call(methods::startDeviceJob, limits::jobStart, {ServiceBytes{encodeJson(spec)}});
    const auto& id = std::get<std::string>(answer.values[0]);
    const std::lock_guard lock(state_->mutex);
    state_->jobs[id] = answer.link;
    return id;
}

DeviceJobStatus HelperClient::deviceJobStatus(const std::string& id) {
    const auto answer = state_->call(methods::deviceJobStatus, limits::jobStatus, {id});
    DeviceJobStatus status;
    try {
        status = decodeJson<DeviceJobStatus>(std::get<ServiceBytes>(answer.values[0]).bytes);
    } catch (const DecodeError& error) {
        throw HelperClientError(Kind::badStatus, error.what());
    }
    if (status.isOver()) {
        const std::lock_guard lock(state_->mutex);
        state_->jobs.erase(id);
    }
    return status;
}

bool HelperClient::cancelDeviceJob(const std::string& id) {
    return std::get<bool>(state_->call(methods::cancelDeviceJob, limits::jobStatus, {id}).values[0]);
}

void HelperClient::removeApplication(const std::string& path) {
    const auto answer = state_->call(methods::removeApplication, limits::removal, {ServiceBytes{path}});
    if (!std::get<bool>(answer.values[0]))
        throw HelperClientError(Kind::refusedRemoval, path);
}

Result HelperClient::installPackage(const std::string& path) {
    return state_->callForResult(methods::installPackage, limits::install, ServiceBytes{path},
                                 Kind::installFailed);
}

Result HelperClient::installUnverifiedPackage(const std::string& path) {
    return state_->callForResult(methods::installUnverifiedPackage, limits::install, ServiceBytes{path},
                                 Kind::installFailed);
}

Result HelperClient::installApplication(const std::string& path) {
    return state_->callForResult(methods::installApplication, limits::install, ServiceBytes{path},
                                 Kind::installFailed);
}

} // namespace vh::helper
