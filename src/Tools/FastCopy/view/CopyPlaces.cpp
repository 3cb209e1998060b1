#include "Tools/FastCopy/view/CopyPlaces.h"

#include "Platform/FileIdentity.h"
#include "Platform/Files.h"

#include <filesystem>
#include <thread>

namespace vh::app {

namespace {

PlaceFacts factsOf(const std::string& path) {
    PlaceFacts facts;
    std::error_code fault;
    const auto real = std::filesystem::canonical(path, fault);
    if (fault)
        return facts;
    facts.exists = true;
    facts.realPath = real.string();
    facts.isFolder = std::filesystem::is_directory(real, fault);
    facts.isWritable = isWritable(facts.realPath);
    if (const auto identity = identityOf(facts.realPath))
        facts.device = identity->device;
    // A file system without a size, as some of the network are, does not tell what is free either.
    if (const auto space = std::filesystem::space(real, fault); !fault && space.capacity > 0) {
        facts.free = static_cast<int64_t>(space.available);
        facts.total = static_cast<int64_t>(space.capacity);
    }
    return facts;
}

} // namespace

const PlaceFacts* CopyPlaces::at(const std::string& path) const {
    const auto found = known_.find(path);
    return found == known_.end() ? nullptr : &found->second;
}

void CopyPlaces::look(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        if (!looking_.insert(path).second)
            continue;
        // Left to itself: a call into a dead drive cannot be ended from here.
        std::thread([this, path, toMain = dispatcher_.post()] {
            toMain([this, path, facts = factsOf(path)] {
                looking_.erase(path);
                known_.insert_or_assign(path, facts);
                emit changed();
            });
        }).detach();
    }
}

} // namespace vh::app
