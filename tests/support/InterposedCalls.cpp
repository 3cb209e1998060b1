// Stand-ins for the C library's file calls. They win over the C library's and a sanitizer's own because the program
// comes first in the search order, and go on to the next definition. They also see what libstdc++ calls.
#include "support/Interposed.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace vh::test {

namespace {

bool takesRoom(CallGroup group) {
    return group == CallGroup::write || group == CallGroup::create || group == CallGroup::name;
}

[[noreturn]] void die() {
    ::kill(::getpid(), SIGKILL);
    for (;;)
        ::pause();
}

/// Notes the call; true when it shall really be made.
bool begins(FileCall call) {
    Interception& state = interception();
    if (!state.armed)
        return true;
    const size_t number = state.calls.size();
    state.armed = false; // what the note itself may call is not the work's
    state.calls.push_back(call);
    state.armed = true;
    const bool isTarget = number == state.target;
    const bool stillFails =
        number > state.target && ((state.kind == FaultKind::fullDisk && takesRoom(call.group)) ||
                                  (state.kind == FaultKind::badMedium && call.group == CallGroup::read));
    if (state.kind == FaultKind::none || (!isTarget && !stillFails))
        return true;
    state.fired = true;
    if (state.kind == FaultKind::killBefore)
        die();
    if (state.kind == FaultKind::meddling) {
        state.armed = false;
        state.meddle();
        state.armed = true;
    }
    if (state.kind != FaultKind::failure && state.kind != FaultKind::fullDisk &&
        state.kind != FaultKind::badMedium)
        return true;
    errno = state.code;
    return false;
}

/// How much of a write that was let through shall be made.
size_t allowed(size_t size) {
    const Interception& state = interception();
    const bool half = state.armed && state.calls.size() == state.target + 1 && size > 1 &&
                      (state.kind == FaultKind::shortWrite || state.kind == FaultKind::killHalfway);
    return half ? size / 2 : size;
}

void dieIfHalfway() {
    const Interception& state = interception();
    if (state.armed && state.calls.size() == state.target + 1 && state.kind == FaultKind::killHalfway)
        die();
}

CallGroup openGroup(int flags) {
    return (flags & O_CREAT) != 0 ? CallGroup::create : CallGroup::open;
}

template <class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

Interception& interception() {
    thread_local Interception state;
    return state;
}

} // namespace vh::test

using vh::test::CallGroup;

// A call with nothing special: VH_CALL(result, name, group, failure, noexcept or nothing, parameters, arguments).
#define VH_CALL(result, name, group, failure, exceptions, parameters, arguments)                             \
    extern "C" result name parameters exceptions {                                                           \
        static auto* const real = vh::test::next<result parameters>(#name);                                  \
        return vh::test::begins({#name, CallGroup::group}) ? real arguments : failure;                       \
    }

#define VH_OPEN(name, parameters, flags, ...)                                                                \
    extern "C" int name parameters {                                                                         \
        static auto* const real = vh::test::next<int parameters>(#name);                                     \
        va_list list;                                                                                        \
        va_start(list, flags);                                                                               \
        const unsigned mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, unsigned) : 0;             \
        va_end(list);                                                                                        \
        return vh::test::begins({#name, vh::test::openGroup(flags)}) ? real(__VA_ARGS__, mode) : -1;         \
    }

VH_OPEN(open, (const char* path, int flags, ...), flags, path, flags)
VH_OPEN(open64, (const char* path, int flags, ...), flags, path, flags)
VH_OPEN(openat, (int folder, const char* path, int flags, ...), flags, folder, path, flags)
VH_OPEN(openat64, (int folder, const char* path, int flags, ...), flags, folder, path, flags)
VH_CALL(int, creat, create, -1, , (const char* path, mode_t mode), (path, mode))
VH_CALL(FILE*, fopen, create, nullptr, , (const char* path, const char* mode), (path, mode))
VH_CALL(FILE*, fopen64, create, nullptr, , (const char* path, const char* mode), (path, mode))
VH_CALL(DIR*, opendir, open, nullptr, , (const char* path), (path))

VH_CALL(ssize_t, read, read, -1, , (int file, void* data, size_t size), (file, data, size))
VH_CALL(ssize_t, pread, read, -1, , (int file, void* data, size_t size, off_t at), (file, data, size, at))
VH_CALL(ssize_t, pread64, read, -1, , (int file, void* data, size_t size, off_t at), (file, data, size, at))
VH_CALL(ssize_t, readv, read, -1, , (int file, const iovec* parts, int count), (file, parts, count))
VH_CALL(dirent*, readdir, read, nullptr, , (DIR * folder), (folder))
VH_CALL(dirent64*, readdir64, read, nullptr, , (DIR * folder), (folder))
VH_CALL(ssize_t, getdents64, read, -1, noexcept, (int folder, void* data, size_t size), (folder, data, size))

#define VH_WRITE(name, parameters, ...)                                                                      \
    extern "C" ssize_t name parameters {                                                                     \
        static auto* const real = vh::test::next<ssize_t parameters>(#name);                                 \
        if (!vh::test::begins({#name, CallGroup::write}))                                                    \
            return -1;                                                                                       \
        const ssize_t written = real(__VA_ARGS__);                                                           \
        vh::test::dieIfHalfway();                                                                            \
        return written;                                                                                      \
    }

VH_WRITE(write, (int file, const void* data, size_t size), file, data, vh::test::allowed(size))
VH_WRITE(pwrite, (int file, const void* data, size_t size, off_t at), file, data, vh::test::allowed(size), at)
VH_WRITE(pwrite64, (int file, const void* data, size_t size, off_t at), file, data, vh::test::allowed(size),
         at)
VH_WRITE(writev, (int file, const iovec* parts, int count), file, parts,
         static_cast<int>(vh::test::allowed(static_cast<size_t>(count))))
VH_WRITE(copy_file_range, (int from, off64_t* fromAt, int to, off64_t* toAt, size_t size, unsigned flags),
         from, fromAt, to, toAt, vh::test::allowed(size), flags)

// Noted, checked and not made: no test can cut the power, and waiting for the disk is where tests spend their time.
#define VH_FLUSH(name)                                                                                       \
    extern "C" int name(int file) {                                                                          \
        if (!vh::test::begins({#name, CallGroup::flush}))                                                    \
            return -1;                                                                                       \
        const int flags = ::fcntl(file, F_GETFL);                                                            \
        if (flags >= 0 && (flags & O_PATH) == 0)                                                             \
            return 0;                                                                                        \
        errno = EBADF;                                                                                       \
        return -1;                                                                                           \
    }

VH_FLUSH(fsync)
VH_FLUSH(fdatasync)
VH_CALL(int, ftruncate, write, -1, noexcept, (int file, off_t size), (file, size))
VH_CALL(int, ftruncate64, write, -1, noexcept, (int file, off64_t size), (file, size))
VH_CALL(int, truncate, write, -1, noexcept, (const char* path, off_t size), (path, size))

VH_CALL(int, rename, name, -1, noexcept, (const char* from, const char* to), (from, to))
VH_CALL(int, renameat, name, -1, noexcept, (int fromFolder, const char* from, int toFolder, const char* to),
        (fromFolder, from, toFolder, to))
VH_CALL(int, renameat2, name, -1, noexcept,
        (int fromFolder, const char* from, int toFolder, const char* to, unsigned flags),
        (fromFolder, from, toFolder, to, flags))
VH_CALL(int, link, name, -1, noexcept, (const char* from, const char* to), (from, to))
VH_CALL(int, linkat, name, -1, noexcept,
        (int fromFolder, const char* from, int toFolder, const char* to, int flags),
        (fromFolder, from, toFolder, to, flags))
VH_CALL(int, symlink, name, -1, noexcept, (const char* target, const char* path), (target, path))
VH_CALL(int, symlinkat, name, -1, noexcept, (const char* target, int folder, const char* path),
        (target, folder, path))
VH_CALL(int, mkdir, name, -1, noexcept, (const char* path, mode_t mode), (path, mode))
VH_CALL(int, mkdirat, name, -1, noexcept, (int folder, const char* path, mode_t mode), (folder, path, mode))

VH_CALL(int, unlink, remove, -1, noexcept, (const char* path), (path))
VH_CALL(int, unlinkat, remove, -1, noexcept, (int folder, const char* path, int flags), (folder, path, flags))
VH_CALL(int, rmdir, remove, -1, noexcept, (const char* path), (path))
VH_CALL(int, remove, remove, -1, noexcept, (const char* path), (path))

VH_CALL(int, flock, attribute, -1, noexcept, (int file, int operation), (file, operation))
VH_CALL(int, fchmod, attribute, -1, noexcept, (int file, mode_t mode), (file, mode))
VH_CALL(int, chmod, attribute, -1, noexcept, (const char* path, mode_t mode), (path, mode))
VH_CALL(int, fchmodat, attribute, -1, noexcept, (int folder, const char* path, mode_t mode, int flags),
        (folder, path, mode, flags))
VH_CALL(int, fchown, attribute, -1, noexcept, (int file, uid_t owner, gid_t group), (file, owner, group))
VH_CALL(int, fsetxattr, attribute, -1, noexcept,
        (int file, const char* name, const void* value, size_t size, int flags),
        (file, name, value, size, flags))
VH_CALL(int, futimens, attribute, -1, noexcept, (int file, const timespec* times), (file, times))

// A failed close has closed the file all the same.
extern "C" int close(int file) {
    static auto* const real = vh::test::next<int(int)>("close");
    const bool succeeds = vh::test::begins({"close", CallGroup::close});
    const int failure = errno;
    const int result = real(file);
    if (succeeds)
        return result;
    errno = failure;
    return -1;
}
