#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh::junk {

/// How the system itself ages the entries of its folders for temporary files, by its tmpfiles.d configuration (format:
/// tmpfiles.d(5)).
struct TemporaryRule {
    /// How long an entry has to lie unused before it may go.
    std::chrono::seconds age{};
    /// Beginnings of paths that the system keeps whatever their age.
    std::vector<std::string> kept;

    bool keeps(std::string_view path) const;

    /// For `folder`, out of the texts of the configuration by the name of their file, where a file of a name stands for
    /// all of that name. Where they say nothing of its age: 30 days for "/var/tmp", 10 for any other.
    static TemporaryRule of(std::string_view folder, const std::map<std::string, std::string>& files);
    /// That of this system.
    static TemporaryRule ofSystem(std::string_view folder);
};

/// "10d", "1w2d 12h", "90" (seconds), also behind the letters that say which times count ("amcABMC:") and "~"; nothing
/// for "-" and what is no age.
std::optional<std::chrono::seconds> tmpfilesAge(std::string_view text);

} // namespace vh::junk
