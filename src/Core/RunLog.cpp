#include "Core/RunLog.h"

#include "Core/Codec.h"
#include "Core/DatabaseLocation.h"
#include "Core/RunFiles.h"
#include "Core/RunFilter.h"
#include "Core/UserDefaults.h"
#include "Platform/FileIdentity.h"
#include "Platform/Files.h"
#include "Platform/Host.h"
#include "Platform/Removal.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace vh {

namespace {

std::string logFile(const std::string& folder) {
    return folder + "/runs.jsonl";
}

} // namespace

RunLog::RunLog(UserDefaults& defaults, RunFiles& files, Clock clock, size_t maxRecords)
    : defaults_(defaults), files_(files), clock_(std::move(clock)), maxRecords_(maxRecords),
      file_(logFile(DatabaseLocation::folder(defaults)), maxRecords) {
    catchUp();
    announced_ = changes_;
}

std::shared_ptr<RunHandle> RunLog::begin(std::string toolID, Trigger trigger, RunDetails details) {
    return std::make_shared<RunHandle>(*this, RunHandle::Kind::whole, std::move(toolID), trigger,
                                       std::move(details), clock_());
}

std::shared_ptr<RunHandle> RunLog::beginPart(std::string toolID, Trigger trigger, RunDetails details) {
    return std::make_shared<RunHandle>(*this, RunHandle::Kind::part, std::move(toolID), trigger,
                                       std::move(details), clock_());
}

// ---- writing

RunLog::Stored RunLog::record(const RunRecord& record) {
    Stored stored = Stored::inFile;
    {
        const std::lock_guard guard(mutex_);
        std::string line;
        try {
            line = encodeJson(record);
        } catch (const EncodeError&) {
            // A number that is not finite: the record is lost from the file but not from memory.
        }
        waiting_.push_back({record, std::move(line)});
        ++changes_;
        try {
            persist();
        } catch (const SystemError&) {
            stored = Stored::inMemory;
        }
        trim();
    }
    notify();
    const std::shared_lock calling(hookMutex_);
    if (hook_)
        hook_(record);
    return stored;
}

/// Writes what waits, oldest first; one line a write, so that a failure leaves whole lines only.
void RunLog::persist() {
    const DatabaseLock lock(defaults_);
    follow(lock.folder());
    for (auto each = waiting_.begin(); each != waiting_.end();) {
        if (each->line.empty()) {
            ++each;
            continue;
        }
        file_.append(each->line);
        each = waiting_.erase(each);
    }
    if (file_.isDueForRewrite())
        file_.rewrite([](const RunRecord&) { return true; });
}

void RunLog::trim() {
    if (waiting_.size() > maxRecords_)
        waiting_.erase(waiting_.begin(), waiting_.end() - static_cast<ptrdiff_t>(maxRecords_));
}

void RunLog::prune(std::optional<Date> before, std::optional<Date> filesBefore) {
    const std::vector<Uuid> lists = files_.runs();
    std::set<Uuid> surviving;
    {
        const std::lock_guard guard(mutex_);
        const DatabaseLock lock(defaults_);
        follow(lock.folder());
        changes_ += file_.catchUp();
        const auto isOld = [&](const RunRecord& record) {
            return before && record.startedAt < *before;
        };
        if (std::ranges::any_of(file_.entries(), isOld, &RunLogFile::Entry::record))
            file_.rewrite([&](const RunRecord& record) { return !isOld(record); });
        std::erase_if(waiting_, [&](const Waiting& each) { return isOld(each.record); });
        ++changes_;
        forEachNewestFirst([&](const RunRecord& record) { return surviving.insert(record.id), true; });
    }
    files_.prune(lists, filesBefore, surviving);
    notify();
}

void RunLog::removeAll() {
    {
        const std::lock_guard guard(mutex_);
        const DatabaseLock lock(defaults_);
        follow(lock.folder());
        file_.rewrite([](const RunRecord&) { return false; });
        waiting_.clear();
        ++changes_;
    }
    notify();
}

void RunLog::clearAll() {
    removeAll();
    files_.removeAll();
    notify();
}

namespace {

/// What stays behind in a folder that is not in use does no harm.
void tryRemove(const std::string& path) {
    try {
        if (statusOf(path))
            removePermanently(path);
    } catch (const SystemError&) {
    }
}

/// The log last, since it may replace another one. After a failure the target folder is as it was.
void copyDatabase(const std::string& from, const std::string& to) {
    std::vector<std::string> made;
    try {
        RunFiles::copyLists(from, to, made);
        if (const auto text = readFileIfPresent(logFile(from)))
            writeFileAtomically(logFile(to), *text);
        else if (statusOf(logFile(to)))
            removePermanently(logFile(to));
    } catch (const SystemError&) {
        for (const auto& path : made)
            tryRemove(path);
        throw;
    }
}

void tryRemoveDatabase(const std::string& folder) {
    try {
        RunFiles::removeLists(folder);
    } catch (const SystemError&) {
    }
    tryRemove(logFile(folder));
}

} // namespace

/// A write can fail when it has already taken effect, and then it counts.
void RunLog::storeFolder(const std::string& folder) {
    try {
        defaults_.set(DatabaseLocation::key, folder);
    } catch (const SystemError&) {
        if (DatabaseLocation::folder(defaults_) != folder)
            throw;
    }
}

/// The new place is whole before the setting points at it, and the old one is in use until then.
void RunLog::relocate(const std::string& folder) {
    {
        const std::lock_guard guard(mutex_);
        const DatabaseLock lock(defaults_);
        follow(lock.folder());
        makeFolders(folder);
        if (std::filesystem::equivalent(lock.folder(), folder))
            return;
        copyDatabase(lock.folder(), folder);
        storeFolder(folder);
        tryRemoveDatabase(lock.folder());
        follow(folder);
        catchUp();
    }
    notify();
}

// ---- following what others do

void RunLog::follow(const std::string& folder) const {
    if (file_.path() == logFile(folder))
        return;
    file_.switchTo(logFile(folder));
    ++changes_;
}

void RunLog::catchUp() const {
    try {
        for (;;) {
            const std::string folder = DatabaseLocation::folder(defaults_);
            follow(folder);
            changes_ += file_.catchUp();
            // Gone from here because it moved just now?
            if (DatabaseLocation::folder(defaults_) == folder)
                return;
        }
    } catch (const SystemError&) {
        // What was read last still holds while the file cannot be read.
    }
}

void RunLog::refresh() {
    {
        const std::lock_guard guard(mutex_);
        catchUp();
        if (changes_ == announced_)
            return;
    }
    notify();
}

void RunLog::notify() {
    Observers<> observers;
    {
        const std::lock_guard guard(mutex_);
        announced_ = changes_;
        observers = observers_;
    }
    observers.tell();
}

std::shared_ptr<void> RunLog::observe(std::function<void()> observer) {
    const std::lock_guard guard(mutex_);
    return observers_.add(std::move(observer));
}

void RunLog::setOnRecord(Hook hook) {
    const std::unique_lock waiting(hookMutex_);
    hook_ = std::move(hook);
}

// ---- reading

/// Visits until `visit` gives false.
template <class Visit>
void RunLog::forEachNewestFirst(Visit visit) const {
    size_t left = maxRecords_;
    for (auto each = waiting_.rbegin(); each != waiting_.rend() && left > 0; ++each, --left)
        if (!visit(each->record))
            return;
    for (size_t i = 0; i < left; ++i) {
        const auto* entry = file_.newest(i);
        if (!entry || !visit(entry->record))
            return;
    }
}

std::vector<RunRecord> RunLog::recent(size_t n) const {
    const std::lock_guard guard(mutex_);
    catchUp();
    std::vector<RunRecord> found;
    forEachNewestFirst([&](const RunRecord& record) {
        if (found.size() == n)
            return false;
        found.push_back(record);
        return true;
    });
    return found;
}

std::vector<RunRecord> RunLog::search(const RunMatcher& filter, size_t most) const {
    const std::lock_guard guard(mutex_);
    catchUp();
    std::vector<RunRecord> found;
    size_t left = maxRecords_;
    const auto visit = [&](const RunRecord& record) {
        if (found.size() == most || left == 0)
            return false;
        --left;
        if (filter.matches(record))
            found.push_back(record);
        return true;
    };
    for (auto each = waiting_.rbegin(); each != waiting_.rend(); ++each)
        if (!visit(each->record))
            return found;
    file_.visitNewestFirst([&](std::string_view line) { return filter.mayMatch(line); }, visit);
    return found;
}

std::vector<RunRecord> RunLog::all() const {
    auto records = recent(maxRecords_);
    std::ranges::reverse(records);
    return records;
}

std::vector<RunRecord> RunLog::since(Date date) const {
    auto records = all();
    std::erase_if(records, [&](const RunRecord& record) { return record.startedAt < date; });
    return records;
}

std::optional<RunRecord> RunLog::last(std::string_view toolID) const {
    const std::lock_guard guard(mutex_);
    catchUp();
    std::optional<RunRecord> found;
    forEachNewestFirst([&](const RunRecord& record) {
        if (record.toolID == toolID)
            found = record;
        return !found;
    });
    return found;
}

double RunLog::total(RunMetric metric, Date since) const {
    const std::lock_guard guard(mutex_);
    catchUp();
    double sum = 0;
    forEachNewestFirst([&](const RunRecord& record) {
        if (record.startedAt >= since)
            sum += record.metric(metric).value_or(0);
        return true;
    });
    return sum;
}

std::optional<RunLog::Stored> RunLog::find(const Uuid& id) const {
    const std::lock_guard guard(mutex_);
    catchUp();
    const auto isIt = [&](const auto& each) {
        return each.record.id == id;
    };
    if (std::ranges::any_of(file_.entries(), isIt))
        return Stored::inFile;
    if (std::ranges::any_of(waiting_, isIt))
        return Stored::inMemory;
    return std::nullopt;
}

bool RunLog::wouldReplace(const std::string& folder) const {
    const auto there = identityOf(logFile(folder));
    return there && there != identityOf(location());
}

std::string RunLog::location() const {
    const std::lock_guard guard(mutex_);
    catchUp();
    return file_.path();
}

int64_t RunLog::bytes() const {
    const auto status = statusOf(location());
    return status ? status->byteSize : 0;
}

const std::string& RunLog::thisComputer() {
    static const std::string name = [] {
        std::string host = hostName();
        return host.empty() ? "Mac" : host;
    }();
    return name;
}

} // namespace vh
