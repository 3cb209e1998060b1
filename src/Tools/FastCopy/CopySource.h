#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace vh::copy {

/// A whole disk as something to copy from.
struct RescueDisk {
    std::string bsdName; ///< the system's short name, such as "sdb" or "disk4"
    std::string name;    ///< for people: its model or label, else its short name
    int64_t size = 0;    ///< bytes
    bool isMounted = false;
};

/// A file or folder by its absolute path, or a whole disk.
using CopySource = std::variant<std::string, RescueDisk>;

} // namespace vh::copy
