#include "Core/RunLogFile.h"

#include "Core/Codec.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace vh {

namespace {

std::optional<RunRecord> decodeLine(JsonDocument& parser, std::string_view line) {
    try {
        return decodeJson<RunRecord>(parser.parse(line));
    } catch (const DecodeError&) {
        return std::nullopt;
    }
}

std::vector<std::string_view> split(std::string_view lines) {
    std::vector<std::string_view> found;
    while (!lines.empty()) {
        found.push_back(lines.substr(0, lines.find('\n')));
        lines.remove_prefix(found.back().size() + 1);
    }
    return found;
}

/// The last `most` of the lines that are records, oldest first. Reads from the end, so that a file that has grown far
/// too long costs no more than one of full length. `start` is where the lines begin in the file.
std::deque<RunLogFile::Entry> lastRecords(JsonDocument& parser, const std::vector<std::string_view>& lines,
                                          int64_t start, size_t most) {
    std::deque<RunLogFile::Entry> found;
    for (auto line = lines.rbegin(); line != lines.rend() && found.size() < most; ++line) {
        const int64_t offset = start + (line->data() - lines.front().data());
        if (auto record = line->empty() ? std::nullopt : decodeLine(parser, *line))
            found.push_front({std::move(*record), offset, line->size()});
    }
    return found;
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

bool RunLogFile::catchUp() {
    const auto now = stampOf(path_);
    if (!now && !open_ && entries_.empty())
        return false;
    if (!now || !open_ || open_->stamp().identity != now->identity || now->byteSize < consumed_)
        return reload();
    return now->byteSize > consumed_ && readOn();
}

bool RunLogFile::reload() {
    auto opened = GrowingFile::openIfPresent(path_);
    const std::string text = opened ? opened->readFrom(0) : std::string();
    const bool hadEntries = !entries_.empty();
    open_ = std::move(opened);
    entries_.clear();
    lines_ = 0;
    consumed_ = 0;
    takeIn(wholeLines(text));
    return hadEntries || !entries_.empty();
}

bool RunLogFile::readOn() {
    const std::string text = open_->readFrom(consumed_);
    const std::string_view lines = wholeLines(text);
    takeIn(lines);
    return !lines.empty();
}

void RunLogFile::takeIn(std::string_view text) {
    const auto lines = split(text);
    auto found = lastRecords(parser_, lines, consumed_, maxRecords_);
    if (entries_.empty())
        entries_ = std::move(found);
    else
        std::ranges::move(found, std::back_inserter(entries_));
    while (entries_.size() > maxRecords_)
        entries_.pop_front();
    lines_ += lines.size();
    consumed_ += static_cast<int64_t>(text.size());
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
    for (size_t i = 0; i < entries_.size(); ++i) {
        if (!keep(entries_[i].record))
            continue;
        kept.push_back(i);
        text.append(old, static_cast<size_t>(entries_[i].offset), entries_[i].length) += '\n';
    }
    writeFileAtomically(path_, text);
    auto opened = GrowingFile::openIfPresent(path_);

    std::deque<Entry> entries;
    int64_t offset = 0;
    for (const size_t i : kept) {
        auto& entry = entries.emplace_back(std::move(entries_[i]));
        entry.offset = offset;
        offset += static_cast<int64_t>(entry.length) + 1;
    }
    open_ = std::move(opened);
    entries_ = std::move(entries);
    lines_ = entries_.size();
    consumed_ = offset;
}

} // namespace vh
