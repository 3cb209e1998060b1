#pragma once

#include <stdexcept>
#include <string>

namespace vh::copy {

/// Why a copy did not begin, or a file could not be copied.
class CopyError : public std::runtime_error {
public:
    enum class Kind { sourceMissing, destinationMissing, destinationInsideSource, io };

    static CopyError sourceMissing(const std::string& path) {
        return {Kind::sourceMissing, "Source not found: " + path};
    }
    static CopyError destinationMissing(const std::string& path) {
        return {Kind::destinationMissing, "Destination folder not found: " + path};
    }
    static CopyError destinationInsideSource(const std::string& path) {
        return {Kind::destinationInsideSource, "Destination is inside the source: " + path};
    }
    static CopyError io(const std::string& text) { return {Kind::io, text}; }

    const Kind kind;

private:
    CopyError(Kind what, const std::string& text) : std::runtime_error(text), kind(what) {}
};

} // namespace vh::copy
