#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vh {

/// Bytes that need not be text: a path, a document.
struct ServiceBytes {
    std::string bytes;
    bool operator==(const ServiceBytes&) const = default;
};

/// What a call to the root service and its answer are made of.
using ServiceValue = std::variant<bool, int64_t, std::string, ServiceBytes>;
using ServiceValues = std::vector<ServiceValue>;

/// No text or run of bytes in a call is longer; what is longer is refused before it is read.
constexpr size_t mostServiceBytes = 1u << 20;

/// One method of a service. A letter says each value's kind: b, x (64 bits, signed), s (text), y (bytes).
struct ServiceMethod {
    std::string_view name;
    std::string_view arguments;
    std::string_view replies;
    /// What the person must be allowed to do, as the system's authority knows it; empty: nothing.
    std::string_view action;
};

/// Under which names a service is found.
struct ServiceIdentity {
    std::string name;      ///< on the bus, or of the Mach service
    std::string path;      ///< of its object
    std::string interface; ///< of its methods, and the beginning of its errors' names
};

/// An answer that says no: a short name without spaces, and the words for the person.
struct ServiceRefusal {
    std::string code;
    std::string text;
    bool operator==(const ServiceRefusal&) const = default;
};

using ServiceReply = std::variant<ServiceValues, ServiceRefusal>;

} // namespace vh
