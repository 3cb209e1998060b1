#pragma once

#include "Automation/AutomationDependencies.h"
#include "Automation/Service.h"
#include "Core/RunRecord.h"

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <typeindex>

namespace vh {
class Desktop;
class ScheduleStore;
class SecretStore;
} // namespace vh
namespace vh::mail {
class MailSender;
}

namespace vh::automation {

class ScheduledActions;
class ScriptLibrary;

/// Everything that runs without a person: the services of the features and what they share. Any number of processes may
/// have one; of those that were told to lead, one at a time watches the clock and the machine, and the next takes over
/// when it ends. Main thread.
class Automation {
public:
    explicit Automation(AutomationDependencies dependencies);
    ~Automation();
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

    const AutomationDependencies& dependencies() const;

    /// This process keeps the run log: what follows the ends of its runs follows them from then on, and runs that were
    /// killed get their records.
    void attach();
    /// Called on the main thread with each record of this process, once attached.
    void setOnRecord(std::function<void(const RunRecord&)> f);

    /// Leads as soon as no other process does: its services watch the clock and the machine, and a socket is open to
    /// requests. From then on also what other processes change is noticed.
    void lead();
    bool isLeading() const;
    /// Called on the main thread when it begins to lead.
    void setOnLeading(std::function<void()> f);
    /// Why it cannot lead, or not hear requests, for people; empty while all is well.
    const std::string& trouble() const;

    /// Follows a link, in the process that leads or else here. Nothing when it was followed, else why not, which is also
    /// shown as a notification.
    std::optional<std::string> openLink(const std::string& url);

    /// The service of a feature, made when it is first asked for.
    template <std::derived_from<Service> S>
    S& service() {
        const auto make = [](Automation& automation) -> std::unique_ptr<Service> {
            return std::make_unique<S>(automation);
        };
        return static_cast<S&>(service(typeid(S), make));
    }
    /// What the services that were made run now.
    std::vector<RunningWork> running() const;
    /// Why it cannot lead, and what its services cannot do, for people.
    std::vector<std::string> troubles();
    /// Told when either changed, until the token goes.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> f);
    /// Asks all that runs to stop.
    void stop();
    /// Waits for what follows the ends of runs; for a program that is about to end.
    void finish(std::chrono::milliseconds limit = std::chrono::minutes(5));
    /// To the same service in the process that leads, off the main thread; nothing happens when there is none.
    void tellLeader(const Service& service, std::string message);

    ScheduledActions& actions();
    ScheduleStore& schedules();
    ScriptLibrary& scripts();
    SecretStore& secrets();
    mail::MailSender& mail();
    Desktop& desktop();

private:
    using MakeService = std::unique_ptr<Service> (*)(Automation& automation);
    Service& service(std::type_index type, MakeService make);
    void makeServices();
    void tryToLead();
    void beginToLead();
    std::string answer(const std::string& request);
    std::optional<std::string> openHere(const std::string& url);

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::automation
