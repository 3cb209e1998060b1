#include "serve/Home.h"

#include "Platform/Files.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vh::test {

struct Home::Opened {
    UserDefaults defaults{UserDefaults::fileOfUser()};
    ScheduleStore schedules{ScheduleStore::fileOfUser()};
    flows::NodesStore store{flows::NodesStore::folderOfUser(), schedules};
    RunFiles files{defaults};
    RunLog log{defaults, files};
};

Home::Home() {
    const std::map<std::string, std::string> variables{
        {"HOME", path()},       {"XDG_CONFIG_HOME", ""}, {"XDG_DATA_HOME", ""},
        {"XDG_CACHE_HOME", ""}, {"XDG_STATE_HOME", ""},  {"XDG_RUNTIME_DIR", *this / "run"},
        {"LANGUAGE", "en"},     {"LC_ALL", "C.UTF-8"},   {"LANG", "C.UTF-8"}};
    makeFolders(*this / "run");
    for (const auto& [name, value] : variables) {
        const char* old = std::getenv(name.c_str());
        before_[name] = old ? std::optional<std::string>(old) : std::nullopt;
        if (value.empty())
            ::unsetenv(name.c_str());
        else
            ::setenv(name.c_str(), value.c_str(), 1);
    }
    opened_ = std::make_unique<Opened>();
}

Home::~Home() {
    for (const auto& [name, value] : before_)
        if (value)
            ::setenv(name.c_str(), value->c_str(), 1);
        else
            ::unsetenv(name.c_str());
}

UserDefaults& Home::defaults() {
    return opened_->defaults;
}

ScheduleStore& Home::schedules() {
    return opened_->schedules;
}

flows::NodesStore& Home::store() {
    return opened_->store;
}

Uuid Home::flow(const std::string& name, const flows::FlowTrigger& start,
                const std::vector<flows::FlowNodeKind>& more) {
    flows::Flow flow = flows::Flow::blank(name, systemNow());
    for (flows::FlowNode& node : flow.nodes)
        if (auto* kind = std::get_if<flows::StartNode>(&node.kind))
            kind->trigger = start;
    for (const flows::FlowNodeKind& kind : more) {
        const Uuid last = flow.nodes.back().id;
        flow.nodes.push_back({Uuid::random(), kind, {}, ""});
        flow.connect(last, flow.nodes.back().id, flows::FlowEdge::Condition::always);
    }
    return store().save(flow).id;
}

std::vector<flows::FlowRun> Home::waitForRuns(const Uuid& flow, size_t count) {
    std::vector<flows::FlowRun> found;
    waitUntil(fmt::format("{} runs of the flow", count), [&] {
        found = runs(flow);
        return found.size() >= count;
    });
    EXPECT_EQ(found.size(), count);
    found.resize(count);
    return found;
}

std::vector<RunRecord> Home::records(const std::string& toolID) {
    opened_->log.refresh();
    std::vector<RunRecord> records = opened_->log.all();
    std::erase_if(records, [&](const RunRecord& each) { return each.toolID != toolID; });
    return records;
}

Program::Program(const std::vector<std::string>& words) {
    std::vector<std::string> all{VH_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : all)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const std::string file = folder_ / "output";
    pid_ = ::fork();
    if (pid_ != 0)
        return;
    const int output = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::execv(VH_PROGRAM, arguments.data());
    ::_exit(127);
}

Program::~Program() {
    if (pid_ > 0) {
        signal(SIGKILL);
        wait();
    }
    if (testing::Test::HasFailure())
        std::fprintf(stderr, "the program said:\n%s\n", output().c_str());
}

std::string Program::output() const {
    return readFileIfPresent(folder_ / "output").value_or("");
}

bool Program::waitForOutput(const std::string& text) const {
    return waitUntil("\"" + text + "\"", [&] { return output().find(text) != std::string::npos; });
}

void Program::signal(int number) const {
    ::kill(pid_, number);
}

int Program::wait() {
    int status = 0;
    if (!waitUntil("the program ends", [&] { return ::waitpid(pid_, &status, WNOHANG) == pid_; }))
        return -1;
    pid_ = -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace vh::test
