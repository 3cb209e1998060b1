#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/Uuid.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh {

class UserDefaults;

/// One file that a run touched.
struct RunFileRow {
    std::string path;
    std::optional<std::string> place; ///< where it went or lies now
    std::optional<int64_t> bytes;
    std::string state; ///< such as "removed" or "failed"
    std::optional<std::string> checksum;
    bool operator==(const RunFileRow&) const = default;
};

template <>
inline constexpr auto
    describe<RunFileRow> = record(field("path", &RunFileRow::path), field("place", &RunFileRow::place),
                                  field("bytes", &RunFileRow::bytes), field("state", &RunFileRow::state),
                                  field("checksum", &RunFileRow::checksum));

/// The lists of what runs touched, "run-files/<run>.jsonl" in the database folder. Holds no state, so any thread
/// and any process may call. A list is saved after its run's record.
class RunFiles {
public:
    static constexpr size_t noLimit = std::numeric_limits<size_t>::max();

    explicit RunFiles(UserDefaults& defaults) : defaults_(defaults) {}

    /// Writes the list whole. Throws SystemError.
    void save(const Uuid& run, const std::vector<RunFileRow>& rows) const;
    /// The first `limit` rows that can be read; reads no further. None when there is no list; throws
    /// SystemError when there is one that cannot be read.
    std::vector<RunFileRow> rows(const Uuid& run, size_t limit = noLimit) const;
    bool has(const Uuid& run) const;
    /// The runs that have a list.
    std::vector<Uuid> runs() const;

    struct Usage {
        size_t lists = 0;
        int64_t bytes = 0;
    };
    Usage usage() const;

    /// Removes those lists of `among` whose run is not in `keeping`, and those last written before `before`. `among`
    /// was taken from runs() before `keeping` was gathered, so that a run that ends meanwhile keeps its list.
    void prune(const std::vector<Uuid>& among, std::optional<Date> before,
               const std::set<Uuid>& keeping) const;
    void removeAll() const;

    /// The two halves of a move, for RunLog::relocate: every list appears in `toFolder` too, and `made` gets the new
    /// files; then the old ones go.
    static void copyLists(const std::string& fromFolder, const std::string& toFolder,
                          std::vector<std::string>& made);
    static void removeLists(const std::string& folder);

private:
    std::string folder() const;
    std::string listFile(const Uuid& run) const;

    UserDefaults& defaults_;
};

} // namespace vh
