#include "Platform/Linux/Inotify.h"

namespace vh {

FileDescriptor openInotify(const std::string& folder) {
    FileDescriptor events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!events && errno == EMFILE &&
        openAt(AT_FDCWD, "/", openForLookup)) // else it is this process's own limit
        throw SystemError(folder, "The system's limit of open watches is used up; raise "
                                  "/proc/sys/fs/inotify/max_user_instances");
    if (!events)
        throwErrno(folder);
    return events;
}

} // namespace vh
