#include "Tools/FastCopy/CopyItems.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyError.h"

#include <algorithm>
#include <filesystem>

namespace vh::copy {

namespace {

/// Goes down a folder, an entry at a time.
class FolderWalk {
public:
    FolderWalk(CopyItems& found, CopyLinks links, const CancelToken& cancel)
        : found_(found), links_(links), cancel_(cancel) {}

    void walk(const std::string& path, uint32_t folder) {
        cancel_.throwIfCancelled();
        std::vector<std::string> below;
        try {
            list(path, folder, below);
        } catch (const SystemError& error) {
            found_.unreadable.push_back(atPath(found_.relativeOf(folder), reasonOf(error)));
        }
        for (std::string& name : below) {
            const std::string inner = path + '/' + name;
            const auto item = static_cast<uint32_t>(found_.items.size());
            found_.items.push_back({std::move(name), folder, CopyItem::Kind::folder, 0});
            walk(inner, item);
        }
    }

private:
    void list(const std::string& path, uint32_t folder, std::vector<std::string>& below) {
        FolderReader reader(path);
        while (const auto entry = reader.next()) {
            std::string name(entry->name);
            if (entry->type == FileType::folder)
                below.push_back(std::move(name));
            else if (entry->type == FileType::file)
                addFile(reader, std::move(name), folder);
            else if (entry->type == FileType::link && links_ == CopyLinks::asLinks)
                found_.items.push_back({std::move(name), folder, CopyItem::Kind::link, 0});
            else
                ++leftOutOf(entry->type);
        }
    }

    int64_t& leftOutOf(FileType type) {
        if (type == FileType::link)
            return found_.leftOut.links;
        return type == FileType::socket ? found_.leftOut.sockets : found_.leftOut.others;
    }

    void addFile(const FolderReader& reader, std::string name, uint32_t folder) {
        if (const auto usage = reader.usage(name)) {
            found_.items.push_back({std::move(name), folder, CopyItem::Kind::file, usage->byteSize});
            return;
        }
        try {
            static_cast<void>(reader.stamp(name)); // gone meanwhile, or may it not be looked at?
        } catch (const SystemError& error) {
            found_.unreadable.push_back(atPath(found_.relativeOf(folder) + '/' + name, reasonOf(error)));
        }
    }

    CopyItems& found_;
    const CopyLinks links_;
    const CancelToken& cancel_;
};

std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

} // namespace

std::string CopyItems::relativeOf(size_t item) const {
    std::string path = items[item].name;
    for (uint32_t up = items[item].folder; up != CopyItem::none; up = items[up].folder)
        path.insert(0, items[up].name + '/');
    return path;
}

CopyItems::Place CopyItems::placeOf(size_t item) const {
    Place place;
    size_t at = item;
    for (; items[at].folder != CopyItem::none; at = items[at].folder)
        place.inside.insert(0, place.inside.empty() ? items[at].name : items[at].name + '/');
    place.source = &*std::prev(std::ranges::upper_bound(sources, at, {}, &Source::item));
    return place;
}

std::string CopyItems::pathOf(size_t item) const {
    const Place place = placeOf(item);
    return place.inside.empty() ? place.source->path : place.source->path + '/' + place.inside;
}

CopyItems itemsOf(const std::vector<std::string>& sources, CopyLinks links, const CancelToken& cancel) {
    namespace fs = std::filesystem;
    CopyItems found;
    for (const std::string& given : sources) {
        const std::string source = withoutTrailingSlashes(given);
        std::string base = source.substr(source.rfind('/') + 1);
        std::error_code error;
        const fs::file_status status = fs::status(source, error);
        if (error || !fs::exists(status))
            throw CopyError::sourceMissing(source);
        const auto item = static_cast<uint32_t>(found.items.size());
        if (!fs::is_directory(status)) {
            const uintmax_t size = fs::file_size(source, error);
            found.sources.push_back({item, source});
            found.items.push_back({std::move(base), CopyItem::none, CopyItem::Kind::file,
                                   error ? 0 : static_cast<int64_t>(size)});
            continue;
        }
        const fs::path real = fs::canonical(source, error);
        found.sources.push_back({item, error ? source : real.string()});
        found.items.push_back({std::move(base), CopyItem::none, CopyItem::Kind::folder, 0});
        FolderWalk(found, links, cancel).walk(found.sources.back().path, item);
    }
    return found;
}

CopyPlan planOf(const std::vector<CopyItem>& items) {
    CopyPlan plan;
    for (const CopyItem& item : items) {
        (item.isFolder() ? plan.folderCount : plan.fileCount) += 1;
        plan.bytes += item.size;
        plan.largestFile = std::max(plan.largestFile, item.size);
    }
    return plan;
}

} // namespace vh::copy
