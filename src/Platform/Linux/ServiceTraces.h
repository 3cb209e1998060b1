#pragma once

#include <optional>
#include <string>

namespace vh {

/// What lies on the disk of a service that the system bus starts.
struct ServiceTraces {
    std::string root;    ///< a folder that stands for "/"; "" for the system itself
    std::string service; ///< its name on the bus
    std::string unit;    ///< of the service manager

    /// The program that the bus would start, when it is there.
    std::optional<std::string> startedProgram() const;
    /// Whether who runs the system forbade the service manager to start it.
    bool isMasked() const;
};

/// Whether somebody listens where the system bus should be.
bool hasSystemBus();

} // namespace vh
