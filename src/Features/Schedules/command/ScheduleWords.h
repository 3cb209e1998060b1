#pragma once

#include "Core/ScheduledTask.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vh {
class Texts;
}

namespace vh::cli {

class CommandLine;
class Verb;

/// The words that say when: one of three options.
struct ScheduleOptions {
    std::string daily;
    std::string weekly;
    std::optional<int> everyHours;

    void addTo(Verb& verb, const CommandLine& line);
    bool isGiven() const { return !daily.empty() || !weekly.empty() || everyHours; }
    /// Throws UsageError for what is no time, and when nothing was said.
    Schedule schedule(const Texts& texts) const;
};

/// The words that say what.
struct TaskOptions {
    std::string title;
    std::string tool;
    std::string action;
    std::vector<std::string> payload;
    ScheduleOptions when;

    void addTo(Verb& verb, const CommandLine& line);
    /// Sets what was said. Throws UsageError for an unknown tool or action, and for a payload without "=".
    void applyTo(ScheduledTask& task, const Texts& texts) const;
};

} // namespace vh::cli
