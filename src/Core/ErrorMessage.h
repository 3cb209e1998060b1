#pragma once

#include "Core/Message.h"

#include <exception>

namespace vh {

class SystemError;
struct RefusedPart;

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
/// What of a file could not be given, and why; see Platform/FileMetadata.h.
Message messageOf(const RefusedPart& part);
/// The fault of one file: its path and what is wrong with it.
Message atPath(std::string_view path, Message what);

} // namespace vh
