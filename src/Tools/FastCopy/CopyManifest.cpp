#include "Tools/FastCopy/CopyManifest.h"

#include "Core/ErrorMessage.h"
#include "Core/LocalCalendar.h"
#include "Core/Texts.h"
#include "Platform/CopyFolder.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/MhlText.h"
#include "Tools/FastCopy/SumsText.h"

#include <cerrno>
#include <fmt/format.h>

namespace vh::copy {

namespace {

/// The name that other tools expect such a list to end in.
std::string_view endingOf(ManifestKind kind, HashAlgorithm algorithm) {
    if (kind == ManifestKind::mhl)
        return "mhl";
    switch (algorithm) {
    case HashAlgorithm::sha256:
        return "sha256";
    case HashAlgorithm::xxhash64:
        return "xxh64";
    default:
        return "md5";
    }
}

std::string nameOf(ManifestKind kind, HashAlgorithm algorithm, Date now) {
    const WallTime time = LocalCalendar().wallTime(now);
    return fmt::format("checksums-{:04}{:02}{:02}-{:02}{:02}{:02}.{}", time.year, time.month, time.day,
                       time.hour, time.minute, time.second, endingOf(kind, algorithm));
}

ManifestEntry entryOf(const CopiedFile& file, HashAlgorithm algorithm) {
    ManifestEntry entry{file.place(), algorithm, *file.checksum, {}, {}};
    if (const auto status = statusOf(file.destination + '/' + file.place())) {
        entry.bytes = status->byteSize;
        entry.modified = Date(std::chrono::seconds(status->modifiedSeconds));
    }
    return entry;
}

/// Under the name, or one beside it that is free. Gives the name.
std::string placeText(const std::string& folder, std::string name, std::string_view text) {
    CopyFolder into(folder);
    for (;;) {
        PartialFile file = into.create(name, 0666);
        file.writeAt(0, text);
        file.flush();
        try {
            file.place(PartialFile::Place::free);
            return name;
        } catch (const SystemError& error) {
            if (error.code() != EEXIST)
                throw;
        }
        name = into.freeName(name);
    }
}

} // namespace

WrittenManifest writeManifest(const CopyReport& report, size_t destination, ManifestKind kind, Date now) {
    const std::string& folder = report.destinations.at(destination).path;
    WrittenManifest written;
    std::string sums;
    std::vector<ManifestEntry> entries;
    for (const CopiedFile& file : report.files) {
        if (file.destination != folder || file.state != CopiedFileState::verified || !file.checksum)
            continue;
        if (kind == ManifestKind::sums)
            sums += sumLine(report.algorithm, *file.checksum, file.place());
        else if (fitsMhl(file.place()))
            entries.push_back(entryOf(file, report.algorithm));
        else
            written.leftOut.push_back(atPath(file.place(), {"fast-copy.problem.not-for-mhl", {}}));
    }
    if (sums.empty() && entries.empty())
        return written;
    const Date start = now - std::chrono::microseconds(static_cast<int64_t>(report.seconds * 1e6));
    written.path = folder + '/' +
                   placeText(folder, nameOf(kind, report.algorithm, now),
                             kind == ManifestKind::sums ? sums : mhlText(entries, start, now));
    return written;
}

ManifestError::ManifestError(Message why)
    : std::runtime_error(worded(why, Texts(Language::en))), message_(std::move(why)) {}

Manifest parseManifest(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    const size_t begin = text.find_first_not_of(" \t\r\n");
    const bool isXml = begin != std::string_view::npos && text[begin] == '<';
    Manifest manifest{isXml ? parseMhl(text) : parseSums(text)};
    if (manifest.entries.empty())
        throw ManifestError({"fast-copy.list.empty", {}});
    return manifest;
}

} // namespace vh::copy
