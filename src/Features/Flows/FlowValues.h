#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/LocalCalendar.h"
#include "Features/Flows/FlowVariable.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vh::flows {

/// A variable that has no value in this run; what() is its token.
class NoValue : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the variables stand for in one run.
struct FlowValues {
    std::optional<std::string> disk; ///< mount point
    std::optional<std::string> diskName;
    std::optional<std::vector<std::string>> files;
    std::optional<std::string> folder;
    Date date;            ///< of the run's start
    std::string timeZone; ///< such as "Europe/Madrid"; empty: the system's

    /// One value, or several for files; nothing when the run has none. What names a disk is safe as a file's name.
    std::optional<std::vector<std::string>> value(FlowVariable variable) const;
    /// Throws NoValue.
    std::string expand(std::string_view text) const;
    /// Entry by entry, trimmed; an entry that is the files and nothing else becomes one entry a file. Throws NoValue.
    std::vector<std::string> expandList(const std::vector<std::string>& list) const;

    bool operator==(const FlowValues&) const = default;
};

} // namespace vh::flows

namespace vh {

template <>
inline constexpr auto describe<flows::FlowValues> = record(field("disk", &flows::FlowValues::disk),
                                                           field("diskName", &flows::FlowValues::diskName),
                                                           field("files", &flows::FlowValues::files),
                                                           field("folder", &flows::FlowValues::folder),
                                                           field("date", &flows::FlowValues::date),
                                                           field("timeZone", &flows::FlowValues::timeZone));

} // namespace vh
