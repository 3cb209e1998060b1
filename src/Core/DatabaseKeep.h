#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"

#include <optional>
#include <string_view>

namespace vh {

/// How long runs or their file lists are kept.
enum class Keep { days30, days90, months6, year, always };

template <>
inline constexpr auto describe<Keep> = enumeration<Keep>({{Keep::days30, "days30"},
                                                          {Keep::days90, "days90"},
                                                          {Keep::months6, "months6"},
                                                          {Keep::year, "year"},
                                                          {Keep::always, "always"}});

/// Where the settings hold them, as raw values.
inline constexpr std::string_view keepRunsKey = "database.keep-runs";
inline constexpr std::string_view keepFilesKey = "database.keep-files";

/// What is older than this may go; nothing when everything stays.
constexpr std::optional<Date> cutoff(Keep keep, Date now) {
    using std::chrono::days;
    switch (keep) {
    case Keep::days30:
        return now - days(30);
    case Keep::days90:
        return now - days(90);
    case Keep::months6:
        return now - days(182);
    case Keep::year:
        return now - days(365);
    case Keep::always:
        break;
    }
    return std::nullopt;
}

} // namespace vh
