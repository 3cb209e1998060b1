#include "HelperKit/HelperServiceError.h"

#include "Core/Printable.h"

namespace vh::helper {

namespace {

/// A path may be long and a program may talk at length; nobody reads more.
constexpr size_t mostTextBytes = 8192;

std::string textForPeople(std::string_view bytes) {
    bytes = bytes.substr(0, mostTextBytes);
    std::string text;
    while (!bytes.empty()) {
        const size_t end = bytes.find('\n');
        text += printable(bytes.substr(0, end));
        if (end == std::string_view::npos)
            break;
        text += '\n';
        bytes.remove_prefix(end + 1);
    }
    return text;
}

} // namespace

HelperServiceError::HelperServiceError(std::string code, const std::string& text)
    : std::runtime_error(text), code_(std::move(code)) {}

HelperServiceError HelperServiceError::denied(const std::string& path) {
    return {"denied", "Path not allowed: " + path};
}

HelperServiceError HelperServiceError::rootDeletionForbidden(const std::string& path) {
    return {"rootDeletionForbidden", "Refusing to delete allowlist root: " + path};
}

HelperServiceError HelperServiceError::deniedBasename(const std::string& name) {
    return {"deniedBasename", "Refusing to delete denied item: " + name};
}

HelperServiceError HelperServiceError::notFound(const std::string& path) {
    return {"notFound", "Path not found: " + path};
}

HelperServiceError HelperServiceError::unknownTask(const std::string& id) {
    return {"unknownTask", "Unknown maintenance task: " + id};
}

HelperServiceError HelperServiceError::taskNotPrivileged(const std::string& id) {
    return {"taskNotPrivileged", "Task " + id + " does not need root; run it from the app."};
}

HelperServiceError HelperServiceError::badJobSpec(const std::string& text) {
    return {"badJobSpec", "Bad device job: " + text};
}

HelperServiceError HelperServiceError::unknownJob(const std::string& id) {
    return {"unknownJob", "Unknown job: " + id};
}

ServiceRefusal HelperServiceError::refusal() const {
    std::string text = textForPeople(what());
    return {code_, text.empty() ? "Helper error" : std::move(text)};
}

} // namespace vh::helper
