#include "Core/ErrorMessage.h"
#include "Core/Throttle.h"
#include "Platform/CopyFolder.h"
#include "Platform/Files.h"
#include "Platform/MediumRead.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyManifest.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>

namespace vh::copy {

namespace {

/// Far beyond the list of a million files.
constexpr int64_t largestManifest = int64_t{512} << 20;

std::string textOf(const SourceFile& file) {
    if (file.size() > largestManifest)
        throw ManifestError({"fast-copy.list.too-large", {{"most", ByteCount{largestManifest}}}});
    std::string text(static_cast<size_t>(file.size()), '\0');
    text.resize(file.readAt(0, text));
    return text;
}

class Check {
public:
    Check(const std::string& folder, Manifest manifest, const JobControl& control)
        : folder_(folder), manifest_(std::move(manifest)), control_(control) {
        found_.files = static_cast<int64_t>(manifest_.entries.size());
    }

    ManifestCheck run() {
        for (const ManifestEntry& entry : manifest_.entries)
            if (!isStopped())
                total_ += sizeOf(entry);
        for (const ManifestEntry& entry : manifest_.entries) {
            if (isStopped())
                break;
            const double before = done_;
            try {
                check(entry);
            } catch (const SystemError& error) {
                book(entry, error);
            }
            done_ = before + sizeOf(entry);
        }
        found_.stopped = isStopped();
        return std::move(found_);
    }

private:
    bool isStopped() const { return control_.cancel.isCancelled(); }

    /// Bytes, for the bar alone: what a list says of sizes may be any number.
    double sizeOf(const ManifestEntry& entry) const {
        if (entry.bytes)
            return static_cast<double>(*entry.bytes);
        const auto status = statusOf(folder_.path() + '/' + entry.relative);
        return status ? static_cast<double>(status->byteSize) : 0;
    }

    void book(const ManifestEntry& entry, const SystemError& error) {
        const bool isDetour = error.code() == ELOOP || error.code() == ENOTDIR;
        if (error.code() == ENOENT)
            found_.missing.push_back(entry.relative);
        else
            found_.faults.push_back(
                atPath(entry.relative, isDetour ? Message{"fast-copy.problem.detour", {}} : reasonOf(error)));
    }

    void check(const ManifestEntry& entry) {
        const SourceFile file = folder_.source(entry.relative);
        if (entry.bytes && *entry.bytes != file.size()) {
            found_.differing.push_back(entry.relative);
            return;
        }
        ContentHash hash(entry.algorithm);
        readBlocks(file.descriptor(), file.path(), ReadFrom::medium, [&](std::string_view block) {
            hash.update(block);
            found_.bytes += static_cast<int64_t>(block.size());
            done_ += static_cast<double>(block.size());
            report(entry.relative);
            return !isStopped();
        });
        if (isStopped())
            return; // what was half read proves nothing
        if (hash.hex() == entry.hash)
            ++found_.matching;
        else
            found_.differing.push_back(entry.relative);
    }

    void report(const std::string& relative) {
        if (reports_.isDue())
            control_.report(total_ > 0 ? std::min(done_ / total_, 1.0) : -1, relative);
    }

    CopyFolder folder_;
    const Manifest manifest_;
    const JobControl& control_;
    ManifestCheck found_;
    double total_ = 0; ///< bytes
    double done_ = 0;
    Throttle reports_;
};

} // namespace

Messages ManifestCheck::problems() const {
    Messages all;
    for (const std::string& path : differing)
        all.push_back(atPath(path, {"fast-copy.problem.listed-differs", {}}));
    for (const std::string& path : missing)
        all.push_back(atPath(path, {"fast-copy.problem.listed-missing", {}}));
    all.insert(all.end(), faults.begin(), faults.end());
    return all;
}

ManifestCheck checkManifest(const std::string& path, const JobControl& control) {
    Manifest manifest = parseManifest(textOf(SourceFile(path, SourceFile::Attributes::left)));
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return Check(folder.empty() ? "." : folder, std::move(manifest), control).run();
}

} // namespace vh::copy
