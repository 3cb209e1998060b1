#include "Platform/Linux/PowerSupplies.h"

#include "Platform/Files.h"
#include "Platform/SystemError.h"

#include <filesystem>

namespace vh {

namespace {

/// An attribute's one line; empty when the supply has no such attribute, or has just gone.
std::string attribute(const std::filesystem::path& supply, const char* name) {
    try {
        std::string text = readFileIfPresent(supply / name).value_or("");
        while (text.ends_with('\n'))
            text.pop_back();
        return text;
    } catch (const SystemError&) {
        return {};
    }
}

} // namespace

std::optional<bool> isOnMains(const std::string& folder) {
    bool hasBattery = false, hasCharger = false, discharges = false;
    std::error_code error;
    for (const auto& supply : std::filesystem::directory_iterator(folder, error)) {
        const std::string type = attribute(supply, "type");
        if (type == "Battery") {
            // A mouse has a battery too.
            if (attribute(supply, "scope") == "Device")
                continue;
            hasBattery = true;
            discharges |= attribute(supply, "status") == "Discharging";
        } else if (type == "Mains" || type == "USB") {
            hasCharger = true;
            if (attribute(supply, "online") == "1")
                return true;
        }
    }
    if (error)
        return std::nullopt;
    return !hasBattery || !(hasCharger || discharges);
}

} // namespace vh
