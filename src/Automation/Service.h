#pragma once

#include "Core/Observers.h"
#include "Core/RunRecord.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace vh::automation {

/// Work that a service does now.
struct RunningWork {
    std::string key; ///< of its own among all that runs in this process
    std::string title;
    std::string toolID;
    std::string_view
        saidAs; ///< the text, with {title}, by which a server without a window says that it began
    std::optional<double> progress; ///< 0 to 1; nothing while it is unknown
    bool isOnlyLooking = false;     ///< it may still find nothing to do
};

/// What a feature does without a person. Automation makes it when it is first asked for, and makes all of them where it
/// is to lead. Main thread but for `take`.
class Service {
public:
    virtual ~Service() = default;

    /// What messages to the process that leads are addressed to.
    virtual std::string_view name() const = 0;
    /// This process keeps the run log from now on: runs that were killed get their records.
    virtual void attach() {}
    /// This process waits to lead: what other processes change is noticed from now on.
    virtual void follow() {}
    /// This process leads: watch, and start what is due.
    virtual void lead() {}
    /// A run of this process ended. Any thread; returns at once.
    virtual void take(const RunRecord&) {}
    /// Asks all that runs to stop.
    virtual void stop() {}
    /// Waits for what follows the ends of runs, at most for `limit`.
    virtual void finish(std::chrono::milliseconds /*limit*/) {}

    virtual std::vector<RunningWork> running() const { return {}; }
    /// What it cannot do or watch while this process leads, with the reason, for people.
    virtual std::vector<std::string> troubles() { return {}; }

    /// Whether a link is one of its own, and what follows it. Nothing when it was followed, else why not, for people.
    virtual bool takesLink(const std::string& /*url*/) const { return false; }
    virtual std::optional<std::string> openLink(const std::string& /*url*/) { return std::nullopt; }
    /// A message from the same service in another process; throws DecodeError.
    virtual void hear(const std::string& /*message*/) {}

    /// Told when `running` or `troubles` changed, until the token goes.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> f) {
        return observers_.add(std::move(f));
    }

protected:
    void tell() const { observers_.tell(); }

private:
    Observers<> observers_;
};

} // namespace vh::automation
