#pragma once

#include "Automation/AutomationWorld.h"
#include "Core/RunRecord.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vh {
class Desktop;
class ScheduleStore;
class SecretStore;
} // namespace vh
namespace vh::flows {
class NodesStore;
}
namespace vh::mail {
class MailSender;
}

namespace vh::automation {

class FlowTriggers;
class NodesRunner;
class OptimizeRunner;
class RunFollowUps;
class ScheduledActions;
class Scheduler;
class ScriptLibrary;
class SyncRunner;

/// Everything that runs without a person, put together. Any number of processes may have one; of those that were told
/// to lead, one at a time watches the clock and the machine, and the next takes over when it ends. Main thread.
class Automation {
public:
    explicit Automation(AutomationWorld world);
    ~Automation();
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

    /// Follow-ups of this process's runs from then on; runs that were killed get their records.
    void attach();
    /// Called on the main thread with each record of this process, once attached.
    void setOnRecord(std::function<void(const RunRecord&)> f);

    /// Leads as soon as no other process does: starts the scheduler and the triggers and opens the door to requests.
    /// From then on also what other processes do to flows and schedules is noticed.
    void lead();
    bool isLeading() const;
    /// Called on the main thread when it begins to lead.
    void setOnLeading(std::function<void()> f);
    /// Why it cannot lead, or not hear requests, for people; empty while all is well.
    const std::string& trouble() const;

    /// Starts the flow of a link, in the process that leads or else here. Nothing when it was started, else why not,
    /// which is also shown as a notification.
    std::optional<std::string> openLink(const std::string& url);

    ScheduleStore& schedules();
    Scheduler& scheduler();
    ScheduledActions& actions();
    OptimizeRunner& optimize();
    SyncRunner& sync();
    flows::NodesStore& flows();
    NodesRunner& runner();
    FlowTriggers& triggers();
    ScriptLibrary& scripts();
    SecretStore& secrets();
    mail::MailSender& mail();
    RunFollowUps& followUps();
    Desktop& desktop();

private:
    void tryToLead();
    void beginToLead();
    std::string answer(const std::string& request);
    std::optional<std::string> openHere(const std::string& url);

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::automation
