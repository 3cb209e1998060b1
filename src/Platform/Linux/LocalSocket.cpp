#include "Platform/Posix/LocalSocket.h"

#include "Platform/Posix/Calls.h"

#include <sys/socket.h>

namespace vh {

FileDescriptor openLocalSocket() {
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket)
        throwErrno("socket");
    return socket;
}

FileDescriptor acceptLocal(const FileDescriptor& listener) {
    return FileDescriptor(
        retried([&] { return ::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK); }));
}

sockaddr_un localAddress(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw SystemError(ENAMETOOLONG, path);
    path.copy(address.sun_path, path.size());
    return address;
}

std::optional<uid_t> peerUser(const FileDescriptor& socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return std::nullopt;
    return peer.uid;
}

} // namespace vh
