#pragma once

#include "Core/ErrorMessage.h"
#include "Core/Printable.h"

#include <stdexcept>
#include <string>

namespace vh::copy {

/// Why a copy did not begin, or a file could not be copied.
class CopyError : public std::runtime_error, public SpeakingError {
public:
    enum class Kind { sourceMissing, destinationMissing, destinationInsideSource, io };

    static CopyError sourceMissing(const std::string& path) {
        return {Kind::sourceMissing, "Source not found: " + path, at("fast-copy.error.source-missing", path)};
    }
    static CopyError destinationMissing(const std::string& path) {
        return {Kind::destinationMissing, "Destination folder not found: " + path,
                at("fast-copy.error.destination-missing", path)};
    }
    static CopyError destinationInsideSource(const std::string& path) {
        return {Kind::destinationInsideSource, "Destination is inside the source: " + path,
                at("fast-copy.error.destination-inside-source", path)};
    }
    static CopyError io(const std::exception& error) { return {Kind::io, error.what(), messageOf(error)}; }

    const Kind kind;
    Message message() const override { return message_; }

private:
    CopyError(Kind what, const std::string& text, Message message)
        : std::runtime_error(text), kind(what), message_(std::move(message)) {}
    static Message at(const char* key, const std::string& path) { return {key, {{"path", printable(path)}}}; }

    Message message_;
};

} // namespace vh::copy
