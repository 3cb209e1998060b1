#pragma once

#include "support/BackgroundProgram.h"
#include "support/TempDir.h"

#include <optional>
#include <string>

namespace vh::test {

/// A D-Bus daemon of the test's own (package dbus), to which this process's environment points as its session or
/// system bus for as long as it lives. Nobody is on it but whom the test puts there (support/BusService.h).
class PrivateBus {
public:
    enum class Kind { session, system };

    /// Throws std::runtime_error when the daemon does not come up.
    explicit PrivateBus(Kind kind);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return daemon_.firstLine(); }
    /// Ends the daemon, as if it had crashed; the environment still points to it.
    void stop() { daemon_.stop(); }

private:
    TempDir folder_;
    const char* variable_;
    std::optional<std::string> before_;
    BackgroundProgram daemon_;
};

/// The environment points to no bus for as long as this lives.
class NoBus {
public:
    NoBus();
    ~NoBus();
    NoBus(const NoBus&) = delete;
    NoBus& operator=(const NoBus&) = delete;

private:
    std::optional<std::string> session_, system_;
};

} // namespace vh::test
