#include "Features/FollowUps/work/RunFollowUps.h"

#include "Core/Csv.h"
#include "Core/Observers.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/ToolTexts.h"
#include "Core/UserDefaults.h"
#include "Mail/MailSender.h"
#include "Platform/Files.h"
#include "Platform/MainLoop.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <fmt/format.h>
#include <mutex>
#include <thread>

namespace vh::automation {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view addressesKey = "follow-ups.addresses";
constexpr std::string_view mailTool = "send-email";

std::string keyOf(std::string_view toolID) {
    return fmt::format("follow-ups.{}", toolID);
}

} // namespace

struct RunFollowUps::State : std::enable_shared_from_this<RunFollowUps::State> {
    State(const AutomationDependencies& w, const mail::MailSender& m) : dependencies(w), mail(m) {}

    FollowUpWishes wishes(const std::string& toolID) const {
        return dependencies.defaults.get<FollowUpWishes>(keyOf(toolID)).value_or(FollowUpWishes());
    }
    void work();
    void follow(const RunRecord& record);
    mail::MailAttachment report(const RunRecord& record, ReportFormat format) const;
    void waitForFileList(const Uuid& run) const;
    std::string folder() const { return dependencies.folders.data + "/Varnholt/Reports"; }

    const AutomationDependencies& dependencies;
    const mail::MailSender& mail;
    CancelToken cancel;

    // Main thread.
    int revision = 0;
    Observers<> observers;
    void changed();

    std::mutex mutex;
    std::condition_variable news;
    std::deque<RunRecord> queue;
    bool isBusy = false;
    std::thread thread;
};

void RunFollowUps::State::changed() {
    ++revision;
    observers.tell();
}

/// The thread's life.
void RunFollowUps::State::work() {
    std::unique_lock guard(mutex);
    while (true) {
        news.wait(guard, [this] { return !queue.empty() || cancel.isCancelled(); });
        if (cancel.isCancelled())
            return;
        const RunRecord record = std::move(queue.front());
        queue.pop_front();
        isBusy = true;
        guard.unlock();
        follow(record);
        dependencies.loop.post([weak = weak_from_this()] {
            if (const auto alive = weak.lock())
                alive->changed();
        });
        guard.lock();
        isBusy = false;
        news.notify_all();
    }
}

void RunFollowUps::State::follow(const RunRecord& record) {
    const FollowUpWishes wanted = wishes(record.toolID);
    const Texts texts = dependencies.texts();
    mail::MailMessage message{
        .recipients = wanted.recipients,
        .subject = texts.text("follow-ups.subject",
                              {{"tool", printable(toolName(texts, record.toolID))},
                               {"outcome", texts.text(fmt::format("outcome.{}", rawValue(record.outcome)))}}),
        .body = texts.text("follow-ups.body", {{"summary", record.summary},
                                               {"computer", record.computer.value_or("")},
                                               {"date", timestamp(record.startedAt, dependencies.calendar)}}),
        .attachments = {}};
    try {
        if (wanted.report)
            message.attachments.push_back(report(record, *wanted.report));
    } catch (const std::exception& error) {
        message.body += "\n\n" + texts.text("follow-ups.no-report", {{"reason", error.what()}});
    }
    // What goes wrong with the mail stands in its own record.
    if (!message.recipients.empty())
        mail.send(message, record.trigger, cancel);
}

/// Makes the report, keeps it and gives it.
mail::MailAttachment RunFollowUps::State::report(const RunRecord& record, ReportFormat format) const {
    waitForFileList(record.id);
    RunReportFile report = reportFileOf(record, dependencies.runs.files.rows(record.id), format,
                                        dependencies.texts(), dependencies.calendar);
    makeFolders(folder());
    writeFileAtomically(folder() + "/" + report.name, report.bytes);
    return {std::move(report.name), std::move(report.type), std::move(report.bytes)};
}

/// The list is saved after the record, which is what brought us here.
void RunFollowUps::State::waitForFileList(const Uuid& run) const {
    const auto limit = std::chrono::steady_clock::now() + 5s;
    while (dependencies.runs.journals.isOpen(run) && std::chrono::steady_clock::now() < limit &&
           !cancel.isCancelled())
        std::this_thread::sleep_for(10ms);
}

RunFollowUps::RunFollowUps(const AutomationDependencies& dependencies, const mail::MailSender& mail)
    : state_(std::make_shared<State>(dependencies, mail)) {}

RunFollowUps::~RunFollowUps() {
    {
        const std::lock_guard guard(state_->mutex);
        state_->cancel.cancel();
    }
    state_->news.notify_all();
    if (state_->thread.joinable())
        state_->thread.join();
}

FollowUpWishes RunFollowUps::wishes(const std::string& toolID) const {
    return state_->wishes(toolID);
}

void RunFollowUps::setWishes(const std::string& toolID, const FollowUpWishes& wishes) {
    UserDefaults& defaults = state_->dependencies.defaults;
    if (wishes.isEmpty())
        defaults.remove(keyOf(toolID));
    else
        defaults.set(keyOf(toolID), wishes);
    std::vector<std::string> known = knownAddresses();
    const size_t before = known.size();
    for (const std::string& address : wishes.recipients)
        if (std::ranges::find(known, address) == known.end())
            known.push_back(address);
    if (known.size() > before)
        defaults.set(addressesKey, known);
    state_->changed();
}

std::vector<std::string> RunFollowUps::knownAddresses() const {
    return state_->dependencies.defaults.get<std::vector<std::string>>(addressesKey)
        .value_or(std::vector<std::string>());
}

int RunFollowUps::revision() const {
    return state_->revision;
}

std::string RunFollowUps::reportsFolder() const {
    return state_->folder();
}

void RunFollowUps::take(const RunRecord& record) {
    // A mail about a mail would never end.
    if (record.toolID == mailTool || state_->wishes(record.toolID).isEmpty())
        return;
    const std::lock_guard guard(state_->mutex);
    if (state_->cancel.isCancelled())
        return;
    state_->queue.push_back(record);
    if (!state_->thread.joinable())
        state_->thread = std::thread([state = state_.get()] { state->work(); });
    state_->news.notify_all();
}

void RunFollowUps::finish(std::chrono::milliseconds limit) {
    std::unique_lock guard(state_->mutex);
    state_->news.wait_for(guard, limit, [this] { return state_->queue.empty() && !state_->isBusy; });
}

std::shared_ptr<void> RunFollowUps::observe(std::function<void()> observer) {
    return state_->observers.add(std::move(observer));
}

} // namespace vh::automation
