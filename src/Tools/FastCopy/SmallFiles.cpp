#include "Tools/FastCopy/SmallFiles.h"

#include "Core/ErrorMessage.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <map>
#include <optional>

namespace vh::copy {

namespace {

constexpr size_t mostFiles = 256;
constexpr size_t mostBytes = 4u << 20;
constexpr size_t mostOpen = 64; ///< of a batch, when its files stay open to be cloned

} // namespace

struct SmallFiles::Batch {
    struct Entry {
        size_t item = 0;
        std::string relative;
        std::optional<SourceFile> source; ///< nothing for a folder, or when it could not be read
        bool isRead = false;              ///< not when all destinations may clone it
        std::string_view bytes;
        std::vector<SourceFile::Stretch> stored; ///< of a file with holes
        std::optional<CopyLink> link;
        std::optional<Message> error; ///< why it could not be read
    };
    std::vector<size_t> takers;
    std::vector<Entry> entries;
    size_t open = 0;
    std::unique_ptr<char[]> room = std::make_unique_for_overwrite<char[]>(mostBytes + largest);
    size_t used = 0;
    std::map<size_t, std::vector<Landing>> landings; ///< per destination, one for each entry

    bool isFull() const { return entries.size() >= mostFiles || used >= mostBytes || open >= mostOpen; }
    void clear() {
        entries.clear();
        landings.clear();
        open = used = 0;
    }
    void read(Entry& entry); ///< throws SystemError
    static Landing land(CopyDestination& destination, const Entry& entry, bool isFolder);
};

namespace {

void readStretches(const SourceFile& source, std::vector<SourceFile::Stretch>& stored) {
    for (int64_t offset = 0; offset < source.size();) {
        auto stretch = source.stretchFrom(offset);
        if (!stretch)
            return;
        stretch->end = offset = std::min(stretch->end, source.size());
        stored.push_back(*stretch);
    }
}

} // namespace

void SmallFiles::Batch::read(Entry& entry) {
    const SourceFile& source = *entry.source;
    const std::span<char> block(room.get() + used,
                                static_cast<size_t>(std::min(source.size(), SmallFiles::largest)));
    const size_t got = source.readAt(0, block);
    if (source.hasHoles())
        readStretches(source, entry.stored);
    if (got < static_cast<size_t>(source.size()) || source.hasChanged())
        entry.error = sourceChanged();
    entry.bytes = {block.data(), got};
    entry.isRead = true;
    used += got;
}

namespace {

void writeAll(CopyDestination& destination, std::string_view bytes, bool hasHoles,
              const std::vector<SourceFile::Stretch>& stored) {
    if (!hasHoles)
        return destination.write(0, bytes);
    for (const auto& [begin, end] : stored)
        if (destination.isGood())
            destination.write(begin,
                              bytes.substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin)));
}

} // namespace

Landing SmallFiles::Batch::land(CopyDestination& destination, const Entry& entry, bool isFolder) {
    if (isFolder)
        return {CopiedFileState::copied, false, {}, destination.makeFolder(entry.relative)};
    if (entry.error)
        return failedLanding(*entry.error);
    if (entry.link)
        return destination.placeLink(entry.relative, *entry.link);
    const SourceFile& source = *entry.source;
    if (auto verdict = destination.begin(entry.relative, source))
        return std::move(*verdict);
    if (entry.isRead) {
        writeAll(destination, entry.bytes, source.hasHoles(), entry.stored);
        return destination.end(source, source.size());
    }
    try { // it was to be cloned, and could not
        std::string bytes(static_cast<size_t>(source.size()), '\0');
        std::vector<SourceFile::Stretch> stored;
        if (source.hasHoles())
            readStretches(source, stored);
        if (source.readAt(0, bytes) == bytes.size() && !source.hasChanged()) {
            writeAll(destination, bytes, source.hasHoles(), stored);
            return destination.end(source, source.size());
        }
        destination.drop();
        return failedLanding(sourceChanged());
    } catch (const SystemError& error) {
        destination.drop();
        return failedLanding(messageOf(error));
    }
}

SmallFiles::SmallFiles(CopyRun& run, CopySources& sources,
                       std::vector<std::unique_ptr<CopyDestination>>& destinations, CopyLanes& lanes)
    : run_(run), sources_(sources), destinations_(destinations), lanes_(lanes),
      filling_(std::make_unique<Batch>()), writing_(std::make_unique<Batch>()) {}

SmallFiles::~SmallFiles() {
    lanes_.wait(); // what is being written is ours
}

void SmallFiles::add(size_t item, const std::vector<size_t>& takers) {
    if (filling_->takers != takers || filling_->isFull())
        begin();
    filling_->takers = takers;
    read(item);
}

void SmallFiles::read(size_t item) {
    Batch::Entry& entry = filling_->entries.emplace_back();
    entry.item = item;
    entry.relative = run_.relativeOf(item);
    if (run_.items()[item].isFolder())
        return;
    try {
        if (run_.items()[item].isLink()) {
            entry.link = sources_.link(item);
            return;
        }
        entry.source.emplace(sources_.open(item));
        const auto cloning = static_cast<size_t>(std::ranges::count_if(filling_->takers, [&](size_t taker) {
            return destinations_[taker]->mayClone(entry.source->device());
        }));
        if (cloning < filling_->takers.size())
            filling_->read(entry);
        if (cloning == 0)
            entry.source->close();
        else
            ++filling_->open;
    } catch (const SystemError& error) {
        entry.error = messageOf(error);
        entry.source.reset();
    }
}

void SmallFiles::begin() {
    book();
    std::swap(filling_, writing_);
    if (writing_->entries.empty())
        return;
    for (const size_t taker : writing_->takers)
        writing_->landings[taker];
    lanes_.start(writing_->takers, [this](size_t taker) {
        std::vector<Landing>& landings = writing_->landings.find(taker)->second;
        landings.reserve(writing_->entries.size());
        for (const Batch::Entry& entry : writing_->entries)
            landings.push_back(
                Batch::land(*destinations_[taker], entry, run_.items()[entry.item].isFolder()));
    });
}

void SmallFiles::bookEntry(size_t index) {
    const Batch::Entry& entry = writing_->entries[index];
    run_.countRead(static_cast<int64_t>(entry.bytes.size()));
    if (run_.items()[entry.item].isFolder()) {
        for (const auto& [destination, landings] : writing_->landings)
            if (landings[index].problem)
                run_.addProblem(destination, atPath(entry.relative, *landings[index].problem));
        return;
    }
    std::vector<Landing*> streamed;
    for (auto& [destination, landings] : writing_->landings)
        if (const CopiedFileState state = landings[index].state;
            state != CopiedFileState::skipped && state != CopiedFileState::cloned)
            streamed.push_back(&landings[index]);
    tellWhenNobodyTookIt(streamed);
    for (const auto& [destination, landings] : writing_->landings)
        run_.book(entry.item, destination, landings[index], 0);
}

void SmallFiles::book() {
    lanes_.wait();
    if (writing_->entries.empty())
        return;
    for (size_t each = 0; each < writing_->entries.size(); ++each)
        bookEntry(each);
    run_.emit(CopyRun::Emit::throttled, writing_->entries.back().relative);
    writing_->clear();
}

void SmallFiles::finish() {
    begin();
    book();
}

} // namespace vh::copy
