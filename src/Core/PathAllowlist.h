#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// A path that no allowlist covers.
class PathAllowlistError : public std::runtime_error {
public:
    explicit PathAllowlistError(std::string refused)
        : std::runtime_error("Path not allowed: " + refused), path(std::move(refused)) {}
    const std::string path; ///< as it was asked for
};

/// The folders an operation that deletes may work in: each prefix itself and all below it, never "/". Compares bytes
/// of standardised paths and follows no links.
class PathAllowlist {
public:
    explicit PathAllowlist(const std::vector<std::string>& prefixes);

    const std::vector<std::string>& allowedPrefixes() const { return allowedPrefixes_; }
    bool allows(std::string_view path) const;
    /// Throws PathAllowlistError.
    void assertAllowed(const std::string& path) const;

    /// Expands a leading "~", drops empty, "." and ".." components, and a leading "/private" that is only an alias.
    static std::string normalize(std::string_view path);

private:
    std::vector<std::string> allowedPrefixes_;
};

} // namespace vh
