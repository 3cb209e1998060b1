#include "HelperKit/HelperClientError.h"

#include "HelperKit/HelperClient.h"

namespace vh::helper {

namespace {

using Kind = HelperClientError::Kind;

std::string forLogs(Kind kind, const std::string& words) {
    switch (kind) {
    case Kind::unavailable:
        return "The helper is not available: " + words;
    case Kind::connectionFailed:
        return "The helper cannot be reached: " + words;
    case Kind::timeout:
        return "The helper did not answer in time: " + words;
    case Kind::refused:
        return words;
    case Kind::restarted:
        return "The helper was restarted and failed again: " + words;
    case Kind::badStatus:
        return "The helper's answer cannot be read: " + words;
    case Kind::taskFailed:
        return "The task failed.";
    case Kind::installFailed:
        return "The installation failed.";
    case Kind::refusedRemoval:
        return "The removal was refused.";
    }
    return words;
}

const char* unavailableKey(HelperRegistrationStatus status) {
    switch (status) {
    case HelperRegistrationStatus::notRegistered:
        return "helper-error.not-registered";
    case HelperRegistrationStatus::requiresApproval:
        return "helper-error.requires-approval";
    default:
        return "helper-error.unavailable";
    }
}

} // namespace

HelperClientError::HelperClientError(Kind what, const std::string& said)
    : HelperClientError(what, HelperRegistrationStatus::enabled, said) {}

HelperClientError::HelperClientError(Kind what, HelperRegistrationStatus registration,
                                     const std::string& said)
    : std::runtime_error(forLogs(what, said)), kind(what), status(registration), words(said) {}

HelperClientError HelperClientError::unavailable(HelperRegistrationStatus status) {
    return {Kind::unavailable, status, std::string(rawValue(status))};
}

Message HelperClientError::message() const {
    switch (kind) {
    case Kind::unavailable:
        return {unavailableKey(status), {}};
    case Kind::connectionFailed:
        return {"helper-error.connection-failed", {{"reason", words}}};
    case Kind::timeout:
        return {"helper-error.timeout", {{"call", words}}};
    case Kind::refused:
        break;
    case Kind::restarted:
        return {"helper-error.restarted", {}};
    case Kind::badStatus:
        return {"helper-error.bad-status", {}};
    case Kind::taskFailed:
        return {"helper-error.task-failed", {}};
    case Kind::installFailed:
        return {"helper-error.install-failed", {}};
    case Kind::refusedRemoval:
        return {"helper-error.refused-removal", {}};
    }
    return Message::literal(words);
}

} // namespace vh::helper
