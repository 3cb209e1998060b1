#pragma once

#include "Core/JsonView.h"
#include "Core/RunRecord.h"
#include "Platform/GrowingFile.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// One log file and the last `maxRecords` records in it, each decoded when first asked for, newest first: who wants the
/// last few does not pay for twenty thousand. A line counts once it has its line feed; one that cannot be read costs no
/// other. Not for sharing between threads.
class RunLogFile {
public:
    RunLogFile(std::string path, size_t maxRecords);

    const std::string& path() const { return path_; }
    struct Entry {
        RunRecord record;
        int64_t offset = 0; ///< of its line in the file
        size_t length = 0;  ///< without the line feed
    };
    const std::deque<Entry>& entries(); ///< all, oldest first
    /// The entry that `index` newer ones follow; nullptr beyond the oldest. Valid until the next call that changes the log.
    const Entry* newest(size_t index);

    /// Newest first, until `visit` gives false. What was not decoded yet is decoded for the visit alone, and only those
    /// lines that are `worth` it.
    void visitNewestFirst(const std::function<bool(std::string_view line)>& worth,
                          const std::function<bool(const RunRecord&)>& visit);

    /// Goes on with another file, which the next catchUp reads.
    void switchTo(std::string path);

    /// Reads what was written since. True when the records changed. Throws SystemError.
    bool catchUp();

    /// The rest needs the database lock. Each throws SystemError and then leaves the file as it was.
    void append(std::string_view line); ///< `line` without its line feed
    /// Drops the records that are not to be kept, those beyond maxRecords and damaged lines.
    void rewrite(const std::function<bool(const RunRecord&)>& keep);
    /// False until the file has outgrown maxRecords by more than a sixteenth.
    bool isDueForRewrite() const { return lines_ > maxRecords_ + maxRecords_ / 16; }

private:
    bool reload();
    bool readOn();
    void takeIn(std::string_view text);
    void decodeOlder(size_t count);
    void forgetUndecoded();
    std::string_view undecodedLine(size_t index) const;
    bool hasCutLine() const;

    std::string path_;
    size_t maxRecords_;
    JsonDocument parser_;
    std::optional<GrowingFile> open_;
    int64_t consumed_ = 0;       // bytes of whole lines read
    size_t lines_ = 0;           // those lines
    std::string undecoded_;      // the file's first bytes, whole lines whose records stand before entries_
    std::vector<size_t> starts_; // of those lines
    std::deque<Entry> entries_;
};

} // namespace vh
