#pragma once

#include "Platform/FileDescriptor.h"

#include <optional>
#include <string>
#include <sys/un.h>

namespace vh {

/// A stream socket between processes of this machine: close-on-exec, and no call on it waits. Throws SystemError.
FileDescriptor openLocalSocket();
/// The next who waits at a listening socket, likewise; empty when there is none.
FileDescriptor acceptLocal(const FileDescriptor& listener);
/// Throws SystemError when the path is too long for a socket.
sockaddr_un localAddress(const std::string& path);

/// The user at the other end; nothing when it cannot be told.
std::optional<uid_t> peerUser(const FileDescriptor& socket);

} // namespace vh
