#pragma once

#include "Core/Codec.h"
#include "Core/RunFiles.h"
#include "Core/RunLog.h"
#include "Core/ScheduleStore.h"
#include "Core/UserDefaults.h"
#include "Features/Flows/NodesStore.h"
#include "support/TempDir.h"
#include "support/WaitUntil.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vh::test {

/// A home of the test's own, to which the environment of this process and its children points while it lives, as the
/// test's process sees what "varnholt" does in it.
class Home {
public:
    Home();
    ~Home();

    const std::string& path() const { return folder_.path(); }
    std::string operator/(std::string_view name) const { return folder_ / name; }

    /// Stores a flow of a start, this computer and `more`, one after the other; gives its identifier.
    Uuid flow(const std::string& name, const flows::FlowTrigger& start,
              const std::vector<flows::FlowNodeKind>& more = {});
    std::vector<flows::FlowRun> runs(const Uuid& flow) { return store().runs(flow); }
    /// Waits until the flow has so many runs; fails the test, with what it has, when that takes too long.
    std::vector<flows::FlowRun> waitForRuns(const Uuid& flow, size_t count);
    std::vector<RunRecord> records(const std::string& toolID);

    UserDefaults& defaults();
    ScheduleStore& schedules();
    flows::NodesStore& store();

private:
    struct Opened;
    TempDir folder_;
    std::map<std::string, std::optional<std::string>> before_;
    std::unique_ptr<Opened> opened_;
};

/// "varnholt" with some words, at work.
class Program {
public:
    explicit Program(const std::vector<std::string>& words);
    /// Kills it, if it still runs.
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    int pid() const { return pid_; }
    std::string output() const;
    bool waitForOutput(const std::string& text) const;
    void signal(int number) const;
    /// Waits for its end: its status, 128 and the signal's number when one killed it.
    int wait();

private:
    TempDir folder_;
    int pid_ = -1;
};

} // namespace vh::test
