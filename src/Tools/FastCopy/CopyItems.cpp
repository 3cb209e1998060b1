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
    FolderWalk(CopyItems& found, const CancelToken& cancel) : found_(found), cancel_(cancel) {}

    void walk(const std::string& folder, const std::string& relative) {
        cancel_.throwIfCancelled();
        std::vector<std::string> below;
        try {
            list(folder, relative, below);
        } catch (const SystemError& error) {
            found_.unreadable.push_back(relative + ": " + error.reason());
        }
        for (const std::string& name : below) {
            const std::string inner = folder + '/' + name, innerRelative = relative + '/' + name;
            found_.items.push_back({inner, innerRelative, true, 0});
            walk(inner, innerRelative);
        }
    }

private:
    void list(const std::string& folder, const std::string& relative, std::vector<std::string>& below) {
        FolderReader reader(folder);
        while (const auto entry = reader.next()) {
            std::string name(entry->name);
            if (entry->type == FileType::folder)
                below.push_back(std::move(name));
            else if (entry->type == FileType::file)
                if (const auto size = reader.byteSize(name)) // gone meanwhile
                    found_.items.push_back({folder + '/' + name, relative + '/' + name, false, *size});
        }
    }

    CopyItems& found_;
    const CancelToken& cancel_;
};

std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

} // namespace

CopyItems itemsOf(const std::vector<std::string>& sources, const CancelToken& cancel) {
    namespace fs = std::filesystem;
    CopyItems found;
    for (const std::string& given : sources) {
        const std::string source = withoutTrailingSlashes(given);
        const std::string base = source.substr(source.rfind('/') + 1);
        std::error_code error;
        const fs::file_status status = fs::status(source, error);
        if (error || !fs::exists(status))
            throw CopyError::sourceMissing(source);
        if (!fs::is_directory(status)) {
            const uintmax_t size = fs::file_size(source, error);
            found.items.push_back({source, base, false, error ? 0 : static_cast<int64_t>(size)});
            continue;
        }
        found.items.push_back({source, base, true, 0});
        const fs::path real = fs::canonical(source, error);
        FolderWalk(found, cancel).walk(error ? source : real.string(), base);
    }
    return found;
}

CopyPlan planOf(const std::vector<CopyItem>& items) {
    CopyPlan plan;
    for (const CopyItem& item : items) {
        (item.isFolder ? plan.folderCount : plan.fileCount) += 1;
        plan.bytes += item.size;
        plan.largestFile = std::max(plan.largestFile, item.size);
    }
    return plan;
}

} // namespace vh::copy
