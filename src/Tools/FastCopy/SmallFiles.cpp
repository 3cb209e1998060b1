#include "Tools/FastCopy/SmallFiles.h"

#include "Platform/SourceFile.h"
#include "Platform/SystemError.h"

#include <map>
#include <optional>

namespace vh::copy {

namespace {

constexpr size_t mostFiles = 256;
constexpr size_t mostBytes = 8u << 20;

} // namespace

struct SmallFiles::Batch {
    struct Entry {
        size_t item = 0;
        std::optional<SourceFile> source; ///< nothing for a folder, or when it could not be read
        std::string bytes;
        std::string error; ///< why it could not be read
    };
    std::vector<size_t> takers;
    std::vector<Entry> entries;
    size_t bytes = 0;
    std::map<size_t, std::vector<Landing>> landings; ///< per destination, one for each entry

    bool isFull() const { return entries.size() >= mostFiles || bytes >= mostBytes; }
    void read(const CopyItem& item, size_t index, SourceFile::Attributes attributes);
    std::vector<Landing> land(CopyDestination& destination, const std::vector<CopyItem>& items) const;
};

void SmallFiles::Batch::read(const CopyItem& item, size_t index, SourceFile::Attributes attributes) {
    Entry entry;
    entry.item = index;
    try {
        if (!item.isFolder) {
            entry.source.emplace(item.source, attributes);
            // A byte more shows that it has grown.
            entry.bytes.resize(static_cast<size_t>(entry.source->size()) + 1);
            entry.bytes.resize(entry.source->readAt(0, entry.bytes));
            if (entry.source->hasChanged())
                entry.error = "the source changed while it was copied";
        }
    } catch (const SystemError& error) {
        entry.error = error.what();
    }
    bytes += entry.bytes.size();
    entries.push_back(std::move(entry));
}

std::vector<Landing> SmallFiles::Batch::land(CopyDestination& destination,
                                             const std::vector<CopyItem>& items) const {
    std::vector<Landing> landed;
    for (const Entry& entry : entries) {
        const CopyItem& item = items[entry.item];
        if (item.isFolder) {
            landed.push_back({CopiedFileState::copied, false, {}, destination.makeFolder(item)});
        } else if (!entry.error.empty()) {
            landed.push_back({CopiedFileState::failed, false, {}, entry.error});
        } else if (auto verdict = destination.begin(item, *entry.source)) {
            landed.push_back(std::move(*verdict));
        } else {
            destination.write(0, entry.bytes);
            landed.push_back(destination.end(*entry.source, static_cast<int64_t>(entry.bytes.size())));
        }
    }
    return landed;
}

SmallFiles::SmallFiles(CopyRun& run, std::vector<std::unique_ptr<CopyDestination>>& destinations,
                       CopyLanes& lanes)
    : run_(run), destinations_(destinations), lanes_(lanes) {}

SmallFiles::~SmallFiles() {
    lanes_.wait(); // what is being written is ours
}

void SmallFiles::add(size_t item, const std::vector<size_t>& takers) {
    if (filling_ && (filling_->takers != takers || filling_->isFull()))
        begin();
    if (!filling_) {
        filling_ = std::make_unique<Batch>();
        filling_->takers = takers;
    }
    filling_->read(run_.items()[item], item,
                   run_.options().keepsMetadata() ? SourceFile::Attributes::read
                                                  : SourceFile::Attributes::left);
}

void SmallFiles::begin() {
    book();
    writing_ = std::move(filling_);
    for (const size_t taker : writing_->takers)
        writing_->landings[taker];
    lanes_.start(writing_->takers, [this](size_t taker) {
        writing_->landings.find(taker)->second = writing_->land(*destinations_[taker], run_.items());
    });
}

void SmallFiles::book() {
    lanes_.wait();
    if (!writing_)
        return;
    for (size_t each = 0; each < writing_->entries.size(); ++each) {
        const size_t item = writing_->entries[each].item;
        run_.countRead(static_cast<int64_t>(writing_->entries[each].bytes.size()));
        for (const auto& [destination, landings] : writing_->landings)
            if (!run_.items()[item].isFolder)
                run_.book(item, destination, landings[each], 0);
            else if (!landings[each].problem.empty())
                run_.addProblem(destination, run_.items()[item].relative + ": " + landings[each].problem);
    }
    run_.emit(CopyRun::Emit::throttled, run_.items()[writing_->entries.back().item].relative);
    writing_.reset();
}

void SmallFiles::finish() {
    if (filling_)
        begin();
    book();
}

} // namespace vh::copy
