#include "Tools/FastCopy/CopyProofs.h"

#include "Core/Codec.h"
#include "Core/ContentHash.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/GrowingFile.h"
#include "Platform/Host.h"
#include "Platform/Removal.h"
#include "Platform/SystemError.h"

#include <atomic>
#include <chrono>
#include <fmt/format.h>
#include <unordered_map>
#include <variant>

namespace vh::copy {

namespace {

constexpr int64_t mostBytes = int64_t{512} << 20; ///< of notes; what comes after them is not noted
constexpr auto longestKept = std::chrono::days(30);
constexpr std::string_view ending = ".jsonl";

/// A run begins to note; what follows is of this start of the system.
struct Begun {
    std::string boot;
};

/// A copy is about to get its name: inode, bytes, modified, changed of both.
struct Landed {
    int64_t destination = 0;
    std::string file;
    std::string place; ///< empty when it is `file`
    std::vector<int64_t> source, copy;
    bool isCloned = false;
    bool isReplaced = false;
};

/// Copies were read back.
struct Proven {
    std::string file;
    std::string checksum;
    std::vector<std::vector<int64_t>> copies; ///< destination, inode, bytes, modified, changed
};

using Line = std::variant<Begun, Landed, Proven>;

std::vector<int64_t> numbersOf(const FileState& state) {
    return {static_cast<int64_t>(state.inode), state.bytes, state.modified, state.changed};
}

FileState stateOf(const std::vector<int64_t>& numbers, size_t from = 0) {
    if (numbers.size() != from + 4)
        throw DecodeError("four numbers are expected");
    return {static_cast<uint64_t>(numbers[from]), numbers[from + 1], numbers[from + 2], numbers[from + 3]};
}

std::string nameFor(const std::vector<std::string>& sources, const std::vector<std::string>& destinations,
                    HashAlgorithm algorithm) {
    ContentHash hash(HashAlgorithm::xxhash64);
    const auto add = [&](const std::vector<std::string>& paths) {
        for (const std::string& each : paths)
            hash.update({each.c_str(), each.size() + 1});
        hash.update({"", 1});
    };
    add(sources);
    add(destinations);
    hash.update(rawValue(algorithm));
    return hash.hex() + std::string(ending);
}

/// Copies that were never taken up again leave nothing for ever.
void removeOldNotes(const std::string& folder) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    for (const std::string& name : childNames(folder)) {
        const std::string path = folder + '/' + name;
        const auto status = statusOf(path);
        if (!name.ends_with(ending) || !status || status->type != FileType::file ||
            now - std::chrono::seconds(status->modifiedSeconds) < longestKept)
            continue;
        if (const FileLock lock = FileLock::tryLock(path))
            removePermanently(path, status->identity);
    }
}

} // namespace

} // namespace vh::copy

namespace vh {

template <>
inline constexpr auto describe<copy::Begun> = record(field("boot", &copy::Begun::boot));
template <>
inline constexpr auto describe<copy::Landed> = record(field("to", &copy::Landed::destination),
                                                      field("file", &copy::Landed::file),
                                                      field("place", &copy::Landed::place).mayBeMissing(),
                                                      field("source", &copy::Landed::source),
                                                      field("copy", &copy::Landed::copy),
                                                      field("cloned", &copy::Landed::isCloned),
                                                      field("replaced", &copy::Landed::isReplaced));
template <>
inline constexpr auto describe<copy::Proven> = record(field("file", &copy::Proven::file),
                                                      field("checksum", &copy::Proven::checksum),
                                                      field("copies", &copy::Proven::copies));
template <>
inline constexpr auto describe<copy::Line> = taggedUnion(unionCase<copy::Begun>("begin"),
                                                         unionCase<copy::Landed>("landed"),
                                                         unionCase<copy::Proven>("proven"));

} // namespace vh

namespace vh::copy {

struct CopyProofs::State {
    std::string path;
    std::unique_ptr<FileLock> lock;
    std::unique_ptr<AppendedFile> file; ///< nothing when no notes are taken
    std::atomic<int64_t> bytes = 0;
    std::atomic<bool> isFull = false;
    std::string boot = bootIdentity();
    bool isOfThisBoot = false;                ///< of the lines that are being read
    std::unordered_map<uint64_t, Note> notes; ///< by what keyOf gives

    static uint64_t keyOf(size_t destination, std::string_view relative) {
        return std::hash<std::string_view>{}(relative) ^ (destination * 0x9E3779B97F4A7C15u);
    }

    void operator()(const Begun& begun) { isOfThisBoot = !boot.empty() && begun.boot == boot; }
    void operator()(Landed landed) {
        Note note{.place = landed.place.empty() ? landed.file : std::move(landed.place),
                  .source = stateOf(landed.source),
                  .copy = stateOf(landed.copy),
                  .isCloned = landed.isCloned,
                  .isReplaced = landed.isReplaced,
                  .isOfThisBoot = isOfThisBoot};
        notes[keyOf(static_cast<size_t>(landed.destination), landed.file)] = std::move(note);
    }
    void operator()(const Proven& proven) {
        for (const std::vector<int64_t>& copy : proven.copies) {
            const FileState state = stateOf(copy, 1);
            const auto note = notes.find(keyOf(static_cast<size_t>(copy.front()), proven.file));
            if (note == notes.end())
                continue;
            note->second.copy = state;
            note->second.checksum = proven.checksum;
        }
    }

    void read(std::string_view text) {
        JsonDocument parser;
        while (!text.empty()) {
            const std::string_view line = text.substr(0, text.find('\n'));
            text.remove_prefix(std::min(line.size() + 1, text.size()));
            try {
                std::visit(*this, decodeJson<Line>(parser.parse(line)));
            } catch (const DecodeError&) { // cut by a kill: that file is copied again
            }
        }
    }

    void open(const std::string& folder, const std::string& name) {
        makeFolders(folder);
        removeOldNotes(folder);
        path = folder + '/' + name;
        FileLock held = FileLock::tryLock(path);
        if (!held)
            return;
        lock = std::make_unique<FileLock>(std::move(held));
        const std::string text = readFile(path);
        read(text);
        bytes = static_cast<int64_t>(text.size());
        file = std::make_unique<AppendedFile>(path);
        write(Begun{boot}, text.empty() || text.ends_with('\n') ? "" : "\n");
    }

    void write(const Line& line, const char* before = "") {
        if (!file || isFull)
            return;
        const std::string text = before + encodeJson(line) + '\n';
        if ((bytes += static_cast<int64_t>(text.size())) > mostBytes) {
            isFull = true;
            return;
        }
        try {
            file->append(text);
        } catch (const SystemError&) {
            isFull = true;
        }
    }
};

CopyProofs::CopyProofs(const std::string& folder, const std::vector<std::string>& sources,
                       const std::vector<std::string>& destinations, HashAlgorithm algorithm)
    : state_(std::make_unique<State>()) {
    try {
        state_->open(folder, nameFor(sources, destinations, algorithm));
    } catch (const SystemError&) {
        state_->file.reset();
        state_->notes.clear();
    }
}

CopyProofs::~CopyProofs() = default;

bool CopyProofs::isEmpty() const {
    return state_->notes.empty();
}

const CopyProofs::Note* CopyProofs::find(size_t destination, const std::string& relative) const {
    const auto found = state_->notes.find(State::keyOf(destination, relative));
    return found == state_->notes.end() ? nullptr : &found->second;
}

void CopyProofs::noteLanding(size_t destination, const std::string& relative, const Note& note) {
    state_->write(Landed{static_cast<int64_t>(destination), relative,
                         note.place == relative ? "" : note.place, numbersOf(note.source),
                         numbersOf(note.copy), note.isCloned, note.isReplaced});
}

void CopyProofs::noteProven(const std::string& relative, const std::string& checksum,
                            const std::vector<std::pair<size_t, FileState>>& copies) {
    Proven proven{relative, checksum, {}};
    for (const auto& [destination, state] : copies) {
        proven.copies.push_back(numbersOf(state));
        proven.copies.back().insert(proven.copies.back().begin(), static_cast<int64_t>(destination));
    }
    state_->write(proven);
}

void CopyProofs::forget() {
    state_->isFull = true;
    if (!state_->file)
        return;
    try {
        removePermanently(state_->path);
    } catch (const SystemError&) { // a copy that finds everything as it was noted is right to take it up
    }
}

} // namespace vh::copy
