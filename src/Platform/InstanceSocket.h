#pragma once

#include "Platform/MainLoop.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vh {

/// Where the running program takes requests of the same user's other processes: a socket in the runtime folder that
/// only this user reaches. A request and its answer are one text each, of at most 64 KiB.
class InstanceSocket {
public:
    /// Gives a request its answer; one that is too long is not sent. Loop's thread; must not throw, may close it.
    using Answer = std::function<std::string(const std::string& request)>;

    /// Nothing when another process has opened the socket of this name. Throws SystemError. Closes when it goes.
    static std::unique_ptr<InstanceSocket> open(MainLoop& loop, const std::string& name, Answer answer);
    ~InstanceSocket();

private:
    struct State;
    explicit InstanceSocket(std::shared_ptr<State> state);
    std::shared_ptr<State> state_;
};

/// The answer of the process that holds the socket; nothing when nobody is there or it does not answer within ten seconds.
/// Blocks. Throws SystemError for a request that is too long.
std::optional<std::string> askInstance(const std::string& name, const std::string& request);

} // namespace vh
