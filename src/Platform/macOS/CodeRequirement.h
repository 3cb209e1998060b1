#pragma once

#include <string>
#include <string_view>

namespace vh {

/// The requirement, in the words of code signing, that a program is this one of this team. A development build has no
/// team, and is known by its identifier alone.
inline std::string codeRequirement(std::string_view identifier, std::string_view teamID) {
    const std::string named = "identifier \"" + std::string(identifier) + "\"";
    if (teamID.empty())
        return named;
    return "anchor apple generic and " + named +
           " and certificate 1[field.1.2.840.113635.100.6.2.6]"
           " and certificate leaf[field.1.2.840.113635.100.6.1.13]"
           " and certificate leaf[subject.OU] = \"" +
           std::string(teamID) + "\"";
}

} // namespace vh
