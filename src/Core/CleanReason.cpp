#include "Core/CleanReason.h"

#include "Core/Fold.h"
#include "Core/Texts.h"

#include <array>

namespace vh {

namespace {

constexpr std::string_view isOpen = "is open: ";
constexpr std::string_view isOpenEnding = " is open — quit it first";
constexpr std::string_view ownedBySystem = "owned by the system — only a permanent delete removes it";
constexpr std::string_view fallback = "could not be removed";

struct ReasonRow {
    std::string_view sign; ///< what the error text, in small letters, contains
    std::string_view reason;
};

/// Tested in this order.
constexpr std::array reasons{
    ReasonRow{"privileged helper", "needs the privileged helper"},
    ReasonRow{"protected app", "protected app"},
    ReasonRow{"permission", plain::protectedBySystem},
    ReasonRow{"not permitted", plain::protectedBySystem},
    ReasonRow{"busy", plain::inUse},
    ReasonRow{"in use", plain::inUse},
    ReasonRow{"resource temporarily", plain::inUse},
    ReasonRow{"no such file", "already gone"},
    ReasonRow{"only be deleted permanently", ownedBySystem},
    ReasonRow{"running", "the app is running"},
};

struct KeyRow {
    std::string_view reason;
    std::string_view key;
};

constexpr std::array keys{
    KeyRow{plain::protectedBySystem, "scan-clean-workspace.reason.protected-by-macos"},
    KeyRow{plain::inUse, "scan-clean-workspace.reason.in-use-by-an-app"},
    KeyRow{"already gone", "scan-clean-workspace.reason.already-gone"},
    KeyRow{ownedBySystem, "scan-clean-workspace.reason.owned-by-the-system"},
    KeyRow{"the app is running", "scan-clean-workspace.reason.the-app-is-running"},
    KeyRow{"needs the privileged helper", "app-uninstaller.reason.needs-helper"},
    KeyRow{"protected app", "app-uninstaller.reason.protected-app"},
};

} // namespace

CleanErrorLine splitError(std::string_view line) {
    const size_t at = line.find(": ");
    if (at == std::string_view::npos)
        return {{}, line};
    return {line.substr(0, at), line.substr(at + 2)};
}

std::string plainReason(std::string_view line) {
    return plainReasonOfText(splitError(line).text);
}

std::string plainReasonOfText(std::string_view text) {
    if (text.ends_with(isOpenEnding))
        return std::string(isOpen).append(text.substr(0, text.size() - isOpenEnding.size()));
    const std::string folded = foldCase(text);
    for (const auto& [sign, reason] : reasons)
        if (folded.find(sign) != std::string::npos)
            return std::string(reason);
    return std::string(fallback);
}

std::string_view localizedReasonKey(std::string_view reason) {
    if (reason.starts_with(isOpen))
        return "privacy-cleaner.reason.app-is-open";
    for (const auto& [plain, key] : keys)
        if (plain == reason)
            return key;
    return "scan-clean-workspace.reason.could-not-be-removed";
}

Message reasonMessage(std::string_view reason) {
    Message message{std::string(localizedReasonKey(reason)), {}};
    if (reason.starts_with(isOpen))
        message.arguments.emplace("name", reason.substr(isOpen.size()));
    return message;
}

std::string localizedReason(const Texts& texts, std::string_view reason) {
    return worded(reasonMessage(reason), texts);
}

} // namespace vh
