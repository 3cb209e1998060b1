#pragma once

#include "Automation/AutomationDependencies.h"
#include "Automation/RunReportFile.h"
#include "Core/Describe.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh::mail {
class MailSender;
}

namespace vh::automation {

/// What the person wants after each run of a tool.
struct FollowUpWishes {
    std::vector<std::string> recipients; ///< mail after each run; none: no mail
    std::optional<ReportFormat> report;  ///< attached to the mail, and kept in the reports folder
    bool isEmpty() const { return recipients.empty() && !report; }
    bool operator==(const FollowUpWishes&) const = default;
};

/// Sends reports of runs to whom it may concern. Wishes are settings, "follow-ups.<tool>"; the addresses that were used
/// are remembered under "follow-ups.addresses". Main thread, but for take.
class RunFollowUps {
public:
    RunFollowUps(const AutomationDependencies& dependencies, const mail::MailSender& mail);
    ~RunFollowUps();

    FollowUpWishes wishes(const std::string& toolID) const;
    /// Throws SystemError.
    void setWishes(const std::string& toolID, const FollowUpWishes& wishes);
    std::vector<std::string> knownAddresses() const;
    /// Counts changes of wishes and runs that were followed up.
    int revision() const;
    /// "<data>/Varnholt/Reports".
    std::string reportsFolder() const;

    /// For RunLog::setOnRecord: returns at once and works on. Any thread.
    void take(const RunRecord& record);
    /// Waits until all that was taken is done, at most for `limit`; for a program that is about to end.
    void finish(std::chrono::milliseconds limit = std::chrono::minutes(5));

    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> observer);

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace vh::automation

namespace vh {
template <>
inline constexpr auto describe<automation::FollowUpWishes> =
    record(field("recipients", &automation::FollowUpWishes::recipients).mayBeMissing(),
           field("report", &automation::FollowUpWishes::report).forgiving());
} // namespace vh
