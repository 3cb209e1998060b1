#include "Platform/Linux/BlockTree.h"

#include "Platform/Blank.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <charconv>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace vh {

namespace {

constexpr size_t mostUsers = 1000; // in case the kernel's folders led in a circle

/// "8:17"
uint64_t numberOf(std::string_view text) {
    unsigned ofMajor = 0, ofMinor = 0;
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return 0;
    std::from_chars(text.data(), text.data() + colon, ofMajor);
    std::from_chars(text.data() + colon + 1, text.data() + text.size(), ofMinor);
    return gnu_dev_makedev(ofMajor, ofMinor);
}

} // namespace

std::vector<std::string> namesIn(const std::string& folder) {
    try {
        std::vector<std::string> names = childNames(folder);
        std::ranges::sort(names);
        return names;
    } catch (const SystemError&) {
        return {}; // no such device, or no udev
    }
}

std::string wordsIn(const std::string& path) {
    try {
        return std::string(trimmed(readFileIfPresent(path).value_or("")));
    } catch (const SystemError&) {
        return {};
    }
}

uint64_t blockDeviceAt(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISBLK(status.st_mode) ? status.st_rdev : 0;
}

BlockNode blockNode(const std::string& folder) {
    return {splitPath(folder).name, folder, numberOf(wordsIn(joinPath(folder, "dev")))};
}

std::vector<BlockNode> partsOf(const BlockNode& disk) {
    std::vector<BlockNode> parts{disk};
    for (const std::string& name : namesIn(disk.folder))
        if (const std::string folder = joinPath(disk.folder, name);
            !wordsIn(joinPath(folder, "partition")).empty())
            parts.push_back(blockNode(folder));
    return parts;
}

std::vector<BlockNode> usersOf(const BlockNode& device) {
    std::vector<BlockNode> users{device};
    for (size_t each = 0; each < users.size() && users.size() < mostUsers; ++each) {
        const std::string holders = joinPath(users[each].folder, "holders");
        for (const std::string& name : namesIn(holders))
            users.push_back(blockNode(realFolder(joinPath(holders, name))));
    }
    users.erase(users.begin());
    return users;
}

} // namespace vh
