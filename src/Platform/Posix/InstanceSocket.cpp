#include "Platform/InstanceSocket.h"

#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/InstanceMessage.h"
#include "Platform/Posix/LocalSocket.h"

#include <algorithm>
#include <fmt/format.h>
#include <list>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vh {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds longestTalk{10'000};

std::string socketPath(const std::string& name) {
    return joinPath(Folders::ofUser().runtime, fmt::format("varnholt/{}.socket", name));
}

/// A folder that only this user enters, so that nobody else finds or takes the socket's place.
void makePrivateFolder(const std::string& path) {
    makeFolders(path);
    const FileDescriptor folder = openPath(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (statusOfOpen(folder, path).st_uid != ::geteuid())
        throw SystemError(path, "The folder belongs to another user");
    if (::fchmod(folder.get(), 0700) != 0)
        throwErrno(path);
}

FileDescriptor listenAt(const std::string& path) {
    const sockaddr_un address = localAddress(path);
    FileDescriptor listener = openLocalSocket();
    // The lock is ours, so what lies here was left by a process that died.
    if (::unlink(path.c_str()) != 0 && errno != ENOENT)
        throwErrno(path);
    constexpr int mostWaiting = 16;
    if (::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::chmod(path.c_str(), 0600) != 0 || ::listen(listener.get(), mostWaiting) != 0)
        throwErrno(path);
    return listener;
}

bool isFromThisUser(const FileDescriptor& socket) {
    return peerUser(socket) == ::geteuid();
}

enum class Received { some, nothingNow, end };

/// Takes what is there, up to the end of the message and no further.
Received receive(const FileDescriptor& socket, std::string& received) {
    char block[16 << 10];
    const size_t wanted = instanceMessageBytes(received).value_or(messageHeaderBytes) - received.size();
    const ssize_t got =
        retried([&] { return ::recv(socket.get(), block, std::min(wanted, sizeof block), 0); });
    if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
        return Received::nothingNow;
    if (got <= 0)
        return Received::end;
    received.append(block, static_cast<size_t>(got));
    return Received::some;
}

bool isTooLong(const std::string& received) {
    return instanceMessageBytes(received).value_or(0) > messageHeaderBytes + mostMessageBytes;
}

std::optional<std::string> textIn(const std::string& received) {
    if (instanceMessageBytes(received) != received.size())
        return std::nullopt;
    return received.substr(messageHeaderBytes);
}

} // namespace

struct InstanceSocket::State : std::enable_shared_from_this<State> {
    struct Visitor {
        FileDescriptor socket;
        std::string received;
        MainLoop::Token reading;
        MainLoop::Token limit;
    };
    using Place = std::list<Visitor>::iterator;

    State(MainLoop& l, std::string p, FileLock k, Answer a)
        : loop(l), path(std::move(p)), lock(std::move(k)), answer(std::move(a)), listener(listenAt(path)) {}
    ~State() { ::unlink(path.c_str()); }

    void letIn();
    void hear(Place visitor);

    MainLoop& loop;
    std::string path;
    FileLock lock; ///< held as long as the socket stands open
    Answer answer;
    FileDescriptor listener;
    std::list<Visitor> visitors;
    MainLoop::Token listening;
};

void InstanceSocket::State::letIn() {
    constexpr size_t mostVisitors = 32;
    FileDescriptor socket = acceptLocal(listener);
    if (!socket || !isFromThisUser(socket) || visitors.size() == mostVisitors)
        return;
    const int roomForAnAnswer =
        4 * mostMessageBytes; // so that sending never waits; the system counts its own share in
    ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDBUF, &roomForAnAnswer, sizeof roomForAnAnswer);
    const Place visitor = visitors.insert(visitors.end(), {std::move(socket), "", nullptr, nullptr});
    visitor->reading =
        loop.watch(visitor->socket.get(), MainLoop::Readiness::readable, [this, visitor] { hear(visitor); });
    visitor->limit = loop.after(longestTalk, [this, visitor] { visitors.erase(visitor); });
}

void InstanceSocket::State::hear(Place visitor) {
    const Received news = receive(visitor->socket, visitor->received);
    if (news == Received::end || isTooLong(visitor->received))
        visitors.erase(visitor);
    else if (const auto request = textIn(visitor->received)) {
        const FileDescriptor socket = std::move(visitor->socket);
        visitors.erase(visitor);
        const std::shared_ptr<State> self = shared_from_this(); // the answer may be to close the socket
        const std::string message = instanceMessage(answer(*request));
        if (!isTooLong(message))
            ::send(socket.get(), message.data(), message.size(), MSG_NOSIGNAL);
    }
}

std::unique_ptr<InstanceSocket> InstanceSocket::open(MainLoop& loop, const std::string& name, Answer answer) {
    const std::string path = socketPath(name);
    makePrivateFolder(splitPath(path).folder);
    FileLock lock = FileLock::tryLock(path + ".lock");
    if (!lock)
        return nullptr;
    auto state = std::make_shared<State>(loop, path, std::move(lock), std::move(answer));
    state->listening = loop.watch(state->listener.get(), MainLoop::Readiness::readable,
                                  [state = state.get()] { state->letIn(); });
    return std::unique_ptr<InstanceSocket>(new InstanceSocket(std::move(state)));
}

InstanceSocket::InstanceSocket(std::shared_ptr<State> state) : state_(std::move(state)) {}

/// At once, even when an answer that is being given holds the rest.
InstanceSocket::~InstanceSocket() {
    state_->listening.reset();
    state_->visitors.clear();
}

namespace {

bool waitFor(const FileDescriptor& socket, short events, steady_clock::time_point end) {
    pollfd descriptor{socket.get(), events, 0};
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
        if (left.count() <= 0)
            return false;
        const int ready = ::poll(&descriptor, 1, static_cast<int>(left.count()));
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
}

bool sendAll(const FileDescriptor& socket, std::string_view bytes, steady_clock::time_point end) {
    while (!bytes.empty()) {
        if (!waitFor(socket, POLLOUT, end))
            return false;
        const ssize_t sent =
            retried([&] { return ::send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL); });
        if (sent < 0 && errno != EAGAIN && errno != EWOULDBLOCK)
            return false;
        bytes.remove_prefix(static_cast<size_t>(std::max<ssize_t>(sent, 0)));
    }
    return true;
}

std::optional<std::string> receiveText(const FileDescriptor& socket, steady_clock::time_point end) {
    std::string received;
    while (waitFor(socket, POLLIN, end)) {
        if (receive(socket, received) == Received::end || isTooLong(received))
            return std::nullopt;
        if (auto text = textIn(received))
            return text;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> askInstance(const std::string& name, const std::string& request) {
    const std::string path = socketPath(name);
    if (request.size() > mostMessageBytes)
        throw SystemError(EMSGSIZE, path);
    const auto end = steady_clock::now() + longestTalk;
    const sockaddr_un address = localAddress(path);
    const FileDescriptor socket = openLocalSocket();
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        !isFromThisUser(socket) || !sendAll(socket, instanceMessage(request), end))
        return std::nullopt;
    return receiveText(socket, end);
}

} // namespace vh
