#include "Core/RunFiles.h"

#include "Core/Codec.h"
#include "Core/DatabaseLocation.h"
#include "Core/UserDefaults.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/GrowingFile.h"
#include "Platform/Removal.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

namespace vh {

namespace {

constexpr std::string_view ending = ".jsonl";

std::string listFolder(const std::string& databaseFolder) {
    return databaseFolder + "/run-files";
}

std::string fileName(const Uuid& run) {
    return run.text() + std::string(ending);
}

std::vector<Uuid> runsIn(const std::string& folder) {
    std::vector<Uuid> runs;
    if (!statusOf(folder))
        return runs;
    for (const auto& name : childNames(folder)) {
        const auto run =
            name.ends_with(ending) ? Uuid::parse(name.substr(0, name.size() - ending.size())) : std::nullopt;
        if (run && fileName(*run) == name)
            runs.push_back(*run);
    }
    return runs;
}

/// Somebody else may have removed it first.
void removeList(const std::string& path) {
    try {
        removePermanently(path);
    } catch (const SystemError&) {
        if (statusOf(path))
            throw;
    }
}

/// A list never changes in place, so where the volume is the same its copy may be a second name.
void copyList(const std::string& from, const std::string& to) {
    if (statusOf(to))
        removePermanently(to);
    std::error_code failed;
    std::filesystem::create_hard_link(from, to, failed);
    if (!failed)
        return;
    if (const auto bytes = readFileIfPresent(from))
        writeFileAtomically(to, *bytes);
}

} // namespace

std::string RunFiles::folder() const {
    return listFolder(DatabaseLocation::folder(defaults_));
}

std::string RunFiles::listFile(const Uuid& run) const {
    return folder() + "/" + fileName(run);
}

void RunFiles::save(const Uuid& run, const std::vector<RunFileRow>& rows) const {
    constexpr size_t besidePaths = 80;
    size_t room = 0; // what is as long as this must not be moved as it grows
    for (const auto& row : rows)
        room += row.path.size() + (row.place ? row.place->size() : 0) + besidePaths;
    std::string text;
    text.reserve(room);
    for (const auto& row : rows)
        text += encodeJson(row) + "\n";
    const DatabaseLock lock(defaults_);
    makeFolders(listFolder(lock.folder()));
    writeFileAtomically(listFolder(lock.folder()) + "/" + fileName(run), text);
}

std::vector<RunFileRow> RunFiles::rows(const Uuid& run, size_t limit) const {
    std::vector<RunFileRow> rows;
    const std::string path = listFile(run);
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open() && errno == ENOENT)
        return rows;
    JsonDocument parser;
    for (std::string line; rows.size() < limit && std::getline(file, line);) {
        try {
            rows.push_back(decodeJson<RunFileRow>(parser.parse(line)));
        } catch (const DecodeError&) {
            // One damaged line never costs the others.
        }
    }
    if (!file.is_open() || file.bad())
        throw SystemError(errno != 0 ? errno : EIO, path);
    return rows;
}

bool RunFiles::has(const Uuid& run) const {
    return statusOf(listFile(run)).has_value();
}

std::vector<Uuid> RunFiles::runs() const {
    return runsIn(folder());
}

RunFiles::Usage RunFiles::usage() const {
    Usage usage;
    for (const auto& run : runs()) {
        if (const auto status = statusOf(listFile(run))) {
            ++usage.lists;
            usage.bytes += status->byteSize;
        }
    }
    return usage;
}

void RunFiles::prune(const std::vector<Uuid>& among, std::optional<Date> before,
                     const std::set<Uuid>& keeping) const {
    for (const auto& run : among) {
        const std::string path = listFile(run);
        const auto status = statusOf(path);
        if (!status)
            continue;
        const Date modified{std::chrono::seconds(status->modifiedSeconds)};
        if (!keeping.contains(run) || (before && modified < *before))
            removeList(path);
    }
}

void RunFiles::removeAll() const {
    for (const auto& run : runs())
        removeList(listFile(run));
}

void RunFiles::copyLists(const std::string& fromFolder, const std::string& toFolder,
                         std::vector<std::string>& made) {
    makeFolders(listFolder(toFolder));
    for (const auto& run : runsIn(listFolder(fromFolder))) {
        const std::string target = listFolder(toFolder) + "/" + fileName(run);
        if (!statusOf(target))
            made.push_back(target);
        copyList(listFolder(fromFolder) + "/" + fileName(run), target);
    }
}

void RunFiles::removeLists(const std::string& folder) {
    for (const auto& run : runsIn(listFolder(folder)))
        removeList(listFolder(folder) + "/" + fileName(run));
}

} // namespace vh
