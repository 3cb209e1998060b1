#include "Core/RunLogFile.h"

#include "Core/Codec.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"

#include <algorithm>

namespace vh {

namespace {

std::optional<RunRecord> decodeLine(JsonDocument& parser, std::string_view line) {
    try {
        return decodeJson<RunRecord>(parser.parse(line));
    } catch (const DecodeError&) {
        return std::nullopt;
    }
}

struct Line {
    RunRecord record;
    std::string_view text;
};

/// The last `most` lines that are records, oldest first. Reads from the end, so that a file that has grown far too
/// long costs no more than one of full length.
std::deque<Line> lastRecords(JsonDocument& parser, std::string_view text, size_t most) {
    std::deque<Line> found;
    while (!text.empty() && found.size() < most) {
        text.remove_suffix(1); // the line feed
        const size_t feed = text.rfind('\n');
        const size_t start = feed == std::string_view::npos ? 0 : feed + 1;
        const std::string_view line = text.substr(start);
        if (!line.empty())
            if (auto record = decodeLine(parser, line))
                found.push_front({std::move(*record), line});
        text.remove_suffix(line.size());
    }
    return found;
}

/// The front part that ends with a line feed.
std::string_view wholeLines(std::string_view text) {
    return text.substr(0, text.rfind('\n') + 1); // nothing found counts as -1
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
    if (!now && !open_ && records_.empty())
        return false;
    if (!now || !open_ || open_->stamp().identity != now->identity || now->byteSize < consumed_)
        return reload();
    return now->byteSize > consumed_ && readOn();
}

bool RunLogFile::reload() {
    auto opened = GrowingFile::openIfPresent(path_);
    const std::string text = opened ? opened->readFrom(0) : std::string();
    const bool hadRecords = !records_.empty();
    open_ = std::move(opened);
    records_.clear();
    lines_ = 0;
    consumed_ = 0;
    takeIn(wholeLines(text));
    return hadRecords || !records_.empty();
}

bool RunLogFile::readOn() {
    const std::string text = open_->readFrom(consumed_);
    const std::string_view lines = wholeLines(text);
    takeIn(lines);
    return !lines.empty();
}

void RunLogFile::takeIn(std::string_view lines) {
    for (auto& line : lastRecords(parser_, lines, maxRecords_))
        records_.push_back(std::move(line.record));
    while (records_.size() > maxRecords_)
        records_.pop_front();
    lines_ += static_cast<size_t>(std::ranges::count(lines, '\n'));
    consumed_ += static_cast<int64_t>(lines.size());
}

void RunLogFile::append(std::string_view line) {
    catchUp();
    // A line that somebody could not end is damaged; this one must not be glued to it.
    const bool hasCutLine = open_ && open_->stamp().byteSize > consumed_;
    appendToFile(path_, (hasCutLine ? "\n" : "") + std::string(line) + "\n");
    try {
        catchUp();
    } catch (const SystemError&) {
        // It is written; reading it back can wait.
    }
}

void RunLogFile::rewrite(const std::function<bool(const RunRecord&)>& keep) {
    std::string old = readFileIfPresent(path_).value_or("");
    if (!old.empty() && old.back() != '\n')
        old += '\n'; // nobody writes now, so a last line without its end is as whole as it will be
    std::string text;
    // The lines themselves are kept, with what a newer version wrote into them.
    for (const auto& line : lastRecords(parser_, old, maxRecords_))
        if (keep(line.record))
            text.append(line.text) += '\n';
    writeFileAtomically(path_, text);
    catchUp();
}

} // namespace vh
