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

/// What a call to the root service and its answer are made of. Text is UTF-8 without NUL.
using ServiceValue = std::variant<bool, int64_t, std::string, ServiceBytes>;
using ServiceValues = std::vector<ServiceValue>;

/// No text or run of bytes in a call or its answer is longer; a call with a longer one is refused before it is read,
/// and of an answer with a longer one the peer learns only that it failed.
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
    std::string interface; ///< of its methods
    std::string errors;    ///< what the names of its refusals begin with, before a dot and the code
    std::string peers;     ///< what the programs that may call are signed as, where the system checks it
};

/// An answer that says no: a short name of letters and digits, and the words for the person.
struct ServiceRefusal {
    std::string code;
    std::string text;
    bool operator==(const ServiceRefusal&) const = default;
};

/// The codes of what is refused on the way, before the service itself is asked or after it answered.
namespace serviceRefusals {
inline constexpr const char* notAuthorized = "notAuthorized";
inline constexpr const char* badArguments = "badArguments";
inline constexpr const char* tooManyCalls = "tooManyCalls";
inline constexpr const char* failed = "failed";
} // namespace serviceRefusals

using ServiceReply = std::variant<ServiceValues, ServiceRefusal>;

} // namespace vh
