#include "support/FaultInjector.h"

#include <cerrno>
#include <csignal>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vh::test {

namespace {

struct Fault {
    FaultKind kind;
    int code;
};

/// Calls are counted and met by the plan as long as it stands.
class Armed {
public:
    Armed(size_t target, Fault fault) {
        Interception& state = interception();
        state = Interception{};
        state.target = target;
        state.kind = fault.kind;
        state.code = fault.code;
        state.calls.reserve(4096);
        state.armed = true;
    }
    ~Armed() { interception().armed = false; }
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;
};

std::vector<Fault> faultsOf(CallGroup group) {
    const Fault denied{FaultKind::failure, EACCES};
    const Fault broken{FaultKind::failure, EIO};
    const Fault full{FaultKind::fullDisk, ENOSPC};
    switch (group) {
    case CallGroup::open:
        return {denied, {FaultKind::failure, EMFILE}};
    case CallGroup::create:
    case CallGroup::name:
        return {denied, full, broken};
    case CallGroup::write:
        return {full, broken, {FaultKind::shortWrite, 0}};
    case CallGroup::remove:
        return {denied, broken};
    case CallGroup::read:
    case CallGroup::flush:
    case CallGroup::attribute:
    case CallGroup::close:
        return {broken};
    }
    return {};
}

std::vector<FileCall> callsOf(const std::function<void()>& setUp, const std::function<void()>& work) {
    setUp();
    countFileCalls(work);
    const std::vector<FileCall> calls = interception().calls;
    if (calls.empty())
        ADD_FAILURE() << "The work makes no file calls, so no fault can meet it";
    return calls;
}

/// Counts plans that met no call. A guard that looks at the running programs makes a call more or less from one run to
/// the next, so a few may miss; many mean that the work is not what was planned for.
class Misses {
public:
    void count(bool met) {
        ++plans_;
        missed_ += met ? 0 : 1;
    }
    ~Misses() {
        if (missed_ * 10 > plans_)
            ADD_FAILURE() << missed_ << " of " << plans_
                          << " faults were never met: the work is not the same every time";
    }

private:
    size_t plans_ = 0;
    size_t missed_ = 0;
};

/// Runs the work in a child that the plan kills; true when it died of that.
bool childWasKilled(size_t call, FaultKind kind, const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        try {
            const Armed armed(call, {kind, 0});
            work();
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "waitpid");
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

} // namespace

std::string FaultPoint::text() const {
    const std::string call_ = fmt::format("call {} ({})", call, what.name);
    switch (kind) {
    case FaultKind::failure:
        return fmt::format("{} failing with {}", call_, std::generic_category().message(code));
    case FaultKind::fullDisk:
        return call_ + " meeting a full disk";
    case FaultKind::badMedium:
        return call_ + " and all reads after it failing";
    case FaultKind::shortWrite:
        return call_ + " writing half";
    case FaultKind::killBefore:
        return "killed before " + call_;
    case FaultKind::killHalfway:
        return "killed in the middle of " + call_;
    case FaultKind::meddling:
        return "another program acting before " + call_;
    case FaultKind::none:
        break;
    }
    return call_;
}

size_t countFileCalls(const std::function<void()>& work) {
    const Armed armed(0, {FaultKind::none, 0});
    work();
    return interception().calls.size();
}

bool runWithFault(size_t call, int code, const std::function<void()>& work) {
    const Armed armed(call, {FaultKind::failure, code});
    work();
    return interception().fired;
}

bool runWithBadMedium(size_t call, const std::function<void()>& work) {
    const Armed armed(call, {FaultKind::badMedium, EIO});
    work();
    return interception().fired;
}

void forEachFault(const std::function<void()>& setUp, const std::function<void()>& work,
                  const std::function<void(const FaultPoint&)>& check) {
    const std::vector<FileCall> calls = callsOf(setUp, work);
    Misses misses;
    for (size_t call = 0; call < calls.size(); ++call) {
        for (const Fault& fault : faultsOf(calls[call].group)) {
            FaultPoint point{call, calls[call], fault.kind, fault.code, std::nullopt};
            const testing::ScopedTrace trace(__FILE__, __LINE__, point.text());
            setUp();
            try {
                const Armed armed(call, fault);
                work();
            } catch (const std::exception& error) {
                point.thrown = error.what();
            }
            misses.count(interception().fired);
            check(point);
        }
    }
}

void forEachKill(const std::function<void()>& setUp, const std::function<void()>& work,
                 const std::function<void(const FaultPoint&)>& check) {
    const std::vector<FileCall> calls = callsOf(setUp, work);
    Misses misses;
    for (size_t call = 0; call < calls.size(); ++call) {
        for (const FaultKind kind : {FaultKind::killBefore, FaultKind::killHalfway}) {
            if (kind == FaultKind::killHalfway && calls[call].group != CallGroup::write)
                continue;
            const FaultPoint point{call, calls[call], kind, 0, std::nullopt};
            const testing::ScopedTrace trace(__FILE__, __LINE__, point.text());
            setUp();
            misses.count(childWasKilled(call, kind, work));
            check(point);
        }
    }
}

void forEachMeddling(const std::function<void()>& setUp, const std::function<void()>& meddle,
                     const std::function<void()>& work, const std::function<void(const FaultPoint&)>& check) {
    const std::vector<FileCall> calls = callsOf(setUp, work);
    Misses misses;
    for (size_t call = 0; call < calls.size(); ++call) {
        FaultPoint point{call, calls[call], FaultKind::meddling, 0, std::nullopt};
        const testing::ScopedTrace trace(__FILE__, __LINE__, point.text());
        setUp();
        try {
            const Armed armed(call, {FaultKind::meddling, 0});
            interception().meddle = meddle;
            work();
        } catch (const std::exception& error) {
            point.thrown = error.what();
        }
        misses.count(interception().fired);
        check(point);
    }
}

} // namespace vh::test
