#include "Platform/FileRights.h"

#include "Platform/SystemError.h"

#include <array>
#include <cstdlib>
#include <fmt/format.h>
#include <grp.h>
#include <pwd.h>
#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace vh {

namespace {

#ifdef SYS_setgroups32
constexpr long setgroupsNumber = SYS_setgroups32; // the other one takes groups of 16 bits here
#else
constexpr long setgroupsNumber = SYS_setgroups;
#endif

/// The library's call would change all threads.
bool setGroupsOfThread(const std::vector<gid_t>& groups) {
    return ::syscall(setgroupsNumber, groups.size(), groups.data()) == 0;
}

std::vector<gid_t> groupsOfProcess() {
    std::vector<gid_t> groups(static_cast<size_t>(::getgroups(0, nullptr)));
    groups.resize(static_cast<size_t>(::getgroups(static_cast<int>(groups.size()), groups.data())));
    return groups;
}

/// Neither call says whether it worked, so it is asked again.
bool become(uid_t user, gid_t group) {
    ::setfsgid(group);
    ::setfsuid(user);
    return static_cast<uid_t>(::setfsuid(static_cast<uid_t>(-1))) == user &&
           static_cast<gid_t>(::setfsgid(static_cast<gid_t>(-1))) == group;
}

} // namespace

struct FileRights::Before {
    std::vector<gid_t> groups = groupsOfProcess();

    ~Before() {
        if (!become(::geteuid(), ::getegid()) || !setGroupsOfThread(groups))
            std::abort(); // a thread that goes on as somebody else would be worse
    }
};

FileRights::FileRights(uint32_t user) {
    if (user == ::geteuid())
        return;
    const std::string who = fmt::format("user {}", user);
    std::array<char, 16384> buffer;
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        throw SystemError(who, "No such user");
    std::vector<gid_t> groups(1024);
    int count = static_cast<int>(groups.size());
    if (::getgrouplist(entry.pw_name, entry.pw_gid, groups.data(), &count) < 0)
        throw SystemError(who, "Too many groups");
    groups.resize(static_cast<size_t>(count));
    if (!become(::geteuid(), ::getegid())) // a sandbox may keep the calls away
        throw SystemError(EPERM, who);
    auto before = std::make_unique<Before>();
    if (!setGroupsOfThread(groups))
        throwErrno(who);
    if (!become(user, entry.pw_gid))
        throw SystemError(EPERM, who);
    before_ = std::move(before);
}

FileRights::~FileRights() = default;

} // namespace vh
