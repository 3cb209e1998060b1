#pragma once

#include "Core/Message.h"

#include <exception>

namespace vh {

class SystemError;

/// An error that knows its words for people in every language; its what() is for logs.
class SpeakingError {
public:
    virtual ~SpeakingError() = default;
    virtual Message message() const = 0;
};

/// What went wrong, for people: what a speaking error says, a system error's path and reason, any other's own words.
Message messageOf(const std::exception& error);
/// Why a system call failed or was refused, without the path. What no text of ours says stays in the system's words.
Message reasonOf(const SystemError& error);

} // namespace vh
