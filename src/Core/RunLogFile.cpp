#include "Core/RunLogFile.h"

#include "Core/Codec.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <vector>

namespace vh {

namespace {

std::optional<RunRecord> decodeLine(JsonDocument& parser, std::string_view line) {
    if (line.empty())
        return std::nullopt;
    try {
        return decodeJson<RunRecord>(parser.parse(line));
    } catch (const DecodeError&) {
        return std::nullopt;
    }
}

/// Where each line begins; `text` ends with a line feed. From find to find, each of which is the C library's vector code.
std::vector<size_t> lineStarts(std::string_view text) {
    std::vector<size_t> starts;
    for (size_t at = 0; at < text.size(); at = text.find('\n', at) + 1)
        starts.push_back(at);
    return starts;
}

/// The front part that ends with a line feed.
std::string_view wholeLines(std::string_view text) {
    return text.substr(0, text.rfind('\n') + 1);
}

} // namespace

RunLogFile::RunLogFile(std::string path, size_t maxRecords)
    : path_(std::move(path)), maxRecords_(std::max<size_t>(maxRecords, 1)) {}

void RunLogFile::switchTo(std::string path) {
    path_ = std::move(path);
    open_.reset();
}

std::string_view RunLogFile::undecodedLine(size_t index) const {
    const size_t start = starts_[index];
    const size_t end = index + 1 < starts_.size() ? starts_[index + 1] : undecoded_.size();
    return std::string_view(undecoded_).substr(start, end - start - 1);
}

/// Moves up to `count` records from the end of undecoded_ to the front of entries_.
void RunLogFile::decodeOlder(size_t count) {
    for (; count > 0 && !starts_.empty() && entries_.size() < maxRecords_; --count) {
        const std::string_view line = undecodedLine(starts_.size() - 1);
        if (auto record = decodeLine(parser_, line))
            entries_.push_front({std::move(*record), static_cast<int64_t>(starts_.back()), line.size()});
        undecoded_.resize(starts_.back());
        starts_.pop_back();
    }
    if (starts_.empty() || entries_.size() == maxRecords_)
        forgetUndecoded();
}

void RunLogFile::forgetUndecoded() {
    undecoded_ = {};
    starts_ = {};
}

const std::deque<RunLogFile::Entry>& RunLogFile::entries() {
    decodeOlder(starts_.size());
    return entries_;
}

const RunLogFile::Entry* RunLogFile::newest(size_t index) {
    while (index >= entries_.size() && !undecoded_.empty())
        decodeOlder(std::max<size_t>(index, 64)); // twice as many each time
    return index < entries_.size() ? &entries_[entries_.size() - 1 - index] : nullptr;
}

void RunLogFile::visitNewestFirst(const std::function<bool(std::string_view)>& worth,
                                  const std::function<bool(const RunRecord&)>& visit) {
    for (auto each = entries_.rbegin(); each != entries_.rend(); ++each)
        if (!visit(each->record))
            return;
    size_t left = maxRecords_ - entries_.size();
    for (size_t index = starts_.size(); left > 0 && index-- > 0; --left) {
        const std::string_view line = undecodedLine(index);
        if (!worth(line))
            continue;
        if (const auto record = decodeLine(parser_, line); record && !visit(*record))
            return;
    }
}

bool RunLogFile::catchUp() {
    const auto now = stampOf(path_);
    if (!now && !open_ && entries_.empty() && undecoded_.empty())
        return false;
    if (!now || !open_ || open_->stamp().identity != now->identity || now->byteSize < consumed_)
        return reload();
    return now->byteSize > consumed_ && readOn();
}

bool RunLogFile::reload() {
    auto opened = GrowingFile::openIfPresent(path_);
    std::string text = opened ? opened->readFrom(0) : std::string();
    const bool hadEntries = !entries_.empty() || !undecoded_.empty();
    text.resize(wholeLines(text).size());
    open_ = std::move(opened);
    entries_.clear();
    undecoded_ = std::move(text);
    starts_ = lineStarts(undecoded_);
    lines_ = starts_.size();
    consumed_ = static_cast<int64_t>(undecoded_.size());
    return hadEntries || !undecoded_.empty();
}

bool RunLogFile::readOn() {
    const std::string text = open_->readFrom(consumed_);
    const std::string_view lines = wholeLines(text);
    takeIn(lines);
    return !lines.empty();
}

void RunLogFile::takeIn(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (auto record = decodeLine(parser_, line))
            entries_.push_back({std::move(*record), consumed_, line.size()});
        ++lines_;
        consumed_ += static_cast<int64_t>(line.size()) + 1;
        text.remove_prefix(line.size() + 1);
    }
    while (entries_.size() > maxRecords_)
        entries_.pop_front();
    if (entries_.size() == maxRecords_)
        forgetUndecoded();
}

/// A line that somebody could not end is damaged; the next must not be glued to it.
bool RunLogFile::hasCutLine() const {
    return open_ && open_->stamp().byteSize > consumed_;
}

void RunLogFile::append(std::string_view line) {
    catchUp();
    appendToFile(path_, (hasCutLine() ? "\n" : "") + std::string(line) + "\n");
    try {
        catchUp();
    } catch (const SystemError&) {
        // It is written; reading it back can wait.
    }
}

/// The lines themselves are kept, with what a newer version wrote into them.
void RunLogFile::rewrite(const std::function<bool(const RunRecord&)>& keep) {
    catchUp();
    if (hasCutLine()) {
        appendToFile(path_, "\n"); // nobody writes now, so it is as whole as it will be
        catchUp();
    }
    const std::string old = open_ ? open_->readFrom(0) : std::string();
    std::string text;
    std::vector<size_t> kept;
    entries();
    for (size_t i = 0; i < entries_.size(); ++i) {
        if (!keep(entries_[i].record))
            continue;
        kept.push_back(i);
        text.append(old, static_cast<size_t>(entries_[i].offset), entries_[i].length) += '\n';
    }
    writeFileAtomically(path_, text);
    auto opened = GrowingFile::openIfPresent(path_);

    std::deque<Entry> rewritten;
    int64_t offset = 0;
    for (const size_t i : kept) {
        auto& entry = rewritten.emplace_back(std::move(entries_[i]));
        entry.offset = offset;
        offset += static_cast<int64_t>(entry.length) + 1;
    }
    open_ = std::move(opened);
    entries_ = std::move(rewritten);
    lines_ = entries_.size();
    consumed_ = offset;
}

} // namespace vh
