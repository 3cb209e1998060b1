#include "Platform/Process.h"

#include "Platform/BrokenPipeGuard.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/Spawn.h"

#include <array>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vh {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How long at most a cancel, the end of the program or a limit goes unnoticed.
constexpr milliseconds longestPause{50};
/// How long a descendant that outlives the program may keep its output open, and how much is read from it.
constexpr milliseconds afterExit{250};
constexpr size_t mostAfterExit = 1u << 20;

/// One program from its start to its end; killed with its group if left early.
class ProcessRun {
public:
    ProcessRun(const ProcessRequest& request, const CancelToken& cancel)
        : request_(request), cancel_(cancel), process_(spawn(request)), unsent_(request.input) {
        endInputWhenSent();
        if (request.timeLimit)
            endAt_ = Clock::now() + *request.timeLimit;
    }
    ~ProcessRun() {
        if (!reaped_) {
            ::kill(-process_.id, SIGKILL);
            retried([&] { return ::waitpid(process_.id, nullptr, 0); });
        }
    }
    ProcessRun(const ProcessRun&) = delete;
    ProcessRun& operator=(const ProcessRun&) = delete;

    ProcessResult finish() {
        while (!isOver()) {
            if (!exitedAt_)
                noticeExit();
            enforceLimits();
            moveBytes(pause());
        }
        reap();
        return std::move(result_);
    }

private:
    bool streamsAreOpen() const { return process_.output || process_.errors; }

    bool isOver() const {
        if (!exitedAt_)
            return false;
        if (!streamsAreOpen())
            return true;
        const bool waited = Clock::now() >= (killAt_ ? *killAt_ : *exitedAt_ + afterExit);
        return waited && (!gotBytes_ || readAfterExit_ > mostAfterExit);
    }

    /// Without reaping, so that the group's number cannot pass to a stranger before the group is killed.
    void noticeExit() {
        siginfo_t info{};
        if (retried([&] {
                return ::waitid(P_PID, static_cast<id_t>(process_.id), &info, WEXITED | WNOHANG | WNOWAIT);
            }) != 0)
            throwErrno(request_.arguments.front());
        if (info.si_pid != 0)
            exitedAt_ = Clock::now();
    }

    void enforceLimits() {
        if (exitedAt_ && !killAt_)
            return;
        if (!killAt_) {
            if (cancel_.isCancelled())
                result_.end = ProcessEnd::cancelled;
            else if (endAt_ && Clock::now() >= *endAt_)
                result_.end = ProcessEnd::timedOut;
            else
                return;
            ::kill(-process_.id, SIGTERM);
            killAt_ = Clock::now() + request_.grace;
        } else if (!exitedAt_ && Clock::now() >= *killAt_) {
            ::kill(-process_.id, SIGKILL);
        }
    }

    /// Bytes and the end of the streams wake us by themselves; only a program without streams is asked often.
    milliseconds pause() {
        const bool asleep = streamsAreOpen() && !exitedAt_;
        idle_ = asleep ? milliseconds{1} : std::min(idle_ * 2, longestPause);
        const milliseconds most = asleep ? longestPause : idle_;
        if (!endAt_ || killAt_)
            return most;
        return std::clamp(std::chrono::ceil<milliseconds>(*endAt_ - Clock::now()), milliseconds{0}, most);
    }

    void moveBytes(milliseconds longest) {
        std::array<pollfd, 3> polled{{{process_.output ? process_.output.get() : -1, POLLIN, 0},
                                      {process_.errors ? process_.errors.get() : -1, POLLIN, 0},
                                      {unsent_.empty() ? -1 : process_.input.get(), POLLOUT, 0}}};
        gotBytes_ = false;
        if (::poll(polled.data(), polled.size(), static_cast<int>(longest.count())) < 0) {
            if (errno != EINTR)
                throwErrno(request_.arguments.front());
            return;
        }
        if (polled[0].revents != 0)
            receive(process_.output, result_.output, request_.onOutput);
        if (polled[1].revents != 0)
            receive(process_.errors, result_.errors, {});
        if (polled[2].revents != 0)
            send();
    }

    void receive(FileDescriptor& stream, std::string& kept,
                 const std::function<void(std::string_view)>& tell) {
        const ssize_t got = ::read(stream.get(), block_.data(), block_.size());
        if (got < 0 && (errno == EAGAIN || errno == EINTR))
            return;
        const bool hungUp = got < 0 && errno == EIO && request_.dialogue; // nobody has the terminal open
        if (got < 0 && !hungUp)
            throwErrno(request_.arguments.front());
        if (got == 0 || hungUp)
            return stream.reset();
        const std::string_view piece(block_.data(), static_cast<size_t>(got));
        gotBytes_ = true;
        if (exitedAt_)
            readAfterExit_ += piece.size();
        kept += piece.substr(0, request_.maxOutputBytes - std::min(request_.maxOutputBytes, kept.size()));
        if (tell)
            tell(piece);
        if (request_.dialogue)
            type(request_.dialogue(piece));
    }

    void type(const std::string& text) {
        typed_ = std::string(unsent_) + text;
        unsent_ = typed_;
    }

    void send() {
        const BrokenPipeGuard guard;
        const ssize_t sent = ::write(process_.input.get(), unsent_.data(), unsent_.size());
        if (sent >= 0)
            unsent_.remove_prefix(static_cast<size_t>(sent));
        else if (errno == EPIPE)
            unsent_ = {}; // the program wants no more, which is its own affair
        else if (errno != EAGAIN && errno != EINTR)
            throwErrno(request_.arguments.front());
        endInputWhenSent();
    }

    /// At a terminal there may always be more to type.
    void endInputWhenSent() {
        if (unsent_.empty() && !request_.dialogue)
            process_.input.reset();
    }

    void reap() {
        if (killAt_)
            ::kill(-process_.id, SIGKILL); // descendants that did not follow the request
        int status = 0;
        if (retried([&] { return ::waitpid(process_.id, &status, 0); }) < 0)
            throwErrno(request_.arguments.front());
        reaped_ = true;
        result_.status = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
        if (WIFSIGNALED(status) && result_.end == ProcessEnd::exited)
            result_.end = ProcessEnd::signalled;
    }

    const ProcessRequest& request_;
    const CancelToken& cancel_;
    SpawnedProcess process_;
    std::string typed_;
    std::string_view unsent_; ///< of the input, or of typed_
    ProcessResult result_;
    std::optional<Clock::time_point> endAt_;
    std::optional<Clock::time_point> killAt_; ///< set once it was asked to end
    std::optional<Clock::time_point> exitedAt_;
    milliseconds idle_{1};
    size_t readAfterExit_ = 0;
    bool gotBytes_ = false;
    bool reaped_ = false;
    std::array<char, 1 << 16> block_;
};

} // namespace

ProcessResult runProcess(const ProcessRequest& request, const CancelToken& cancel) {
    return ProcessRun(request, cancel).finish();
}

std::optional<std::string> findProgram(std::string_view name) {
    const auto runnable = [](const std::string& path) {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
               ::access(path.c_str(), X_OK) == 0;
    };
    if (name.find('/') != std::string_view::npos) {
        const std::string path = withRealFolder(std::string(name));
        return runnable(path) ? std::optional(path) : std::nullopt;
    }
    const char* variable = ::getenv("PATH");
    std::string_view folders = variable != nullptr ? variable : "/usr/local/bin:/usr/bin:/bin";
    while (!folders.empty() && !name.empty()) {
        const size_t colon = folders.find(':');
        const std::string path = joinPath(folders.substr(0, colon), name);
        if (path.starts_with('/') && runnable(path))
            return path;
        folders.remove_prefix(colon == std::string_view::npos ? folders.size() : colon + 1);
    }
    return std::nullopt;
}

} // namespace vh
