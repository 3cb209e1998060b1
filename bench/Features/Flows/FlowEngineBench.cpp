#include "Features/Flows/FlowEngine.h"
#include "Features/Flows/work/NodeThreads.h"

#include <benchmark/benchmark.h>
#include <fstream>
#include <string>

namespace {

using namespace vh;
using namespace vh::flows;

/// Ends each node before it returns.
class Instant : public FlowExecutor {
public:
    void run(const FlowStep&, const CancelToken&, Done done) override { done({}); }
};

FlowNode work() {
    return {Uuid::random(), WaitNode{1}, {}, {}};
}

/// A chain, or one node with all others right after it and one after all of those.
Flow drawn(size_t count, bool isChain) {
    Flow flow;
    flow.nodes.push_back({Uuid::random(), StartNode{}, {}, {}});
    for (size_t i = 1; i < count; ++i) {
        flow.nodes.push_back(work());
        const Uuid& from = flow.nodes[isChain ? i - 1 : 0].id;
        flow.edges.push_back({Uuid::random(), from, flow.nodes[i].id, FlowEdge::Condition::always});
    }
    flow.nodes.push_back(work());
    for (size_t i = isChain ? count - 1 : 1; i < count; ++i)
        flow.edges.push_back(
            {Uuid::random(), flow.nodes[i].id, flow.nodes.back().id, FlowEdge::Condition::always});
    return flow;
}

void runFlow(benchmark::State& state, bool isChain) {
    const auto count = static_cast<size_t>(state.range(0));
    const Flow flow = drawn(count, isChain);
    Instant executor;
    for (auto _ : state)
        benchmark::DoNotOptimize(FlowEngine::run(flow, executor, [](const Uuid&, const FlowNodeState&) {}));
    state.counters["per_node"] =
        benchmark::Counter(static_cast<double>(count) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

double residentMegabytes() {
    std::ifstream statm("/proc/self/statm");
    double pages = 0;
    statm >> pages >> pages;
    return pages * 4096 / 1e6;
}

/// Waits that are all under way at once; the last to come notes the memory and stops them.
class Waiting : public FlowExecutor {
public:
    Waiting(size_t count, CancelToken cancel) : left_(count), cancel_(cancel), waits_(cancel) {}
    void run(const FlowStep&, const CancelToken&, Done done) override {
        waits_.wait(3600, [done = std::move(done)](automation::NodeWaits::End) { done({}); });
        if (--left_ == 0) {
            megabytes = residentMegabytes();
            cancel_.cancel();
        }
    }
    double megabytes = 0;

private:
    size_t left_;
    const CancelToken cancel_;
    automation::NodeWaits waits_;
};

void BM_Chain(benchmark::State& state) {
    runFlow(state, true);
}
void BM_Fan(benchmark::State& state) {
    runFlow(state, false);
}
void BM_ReadyWaits(benchmark::State& state) {
    const auto count = static_cast<size_t>(state.range(0));
    const Flow flow = drawn(count, false);
    for (auto _ : state) {
        const CancelToken cancel;
        Waiting executor(count - 1, cancel);
        FlowEngine::run(
            flow, executor, [](const Uuid&, const FlowNodeState&) {}, cancel);
        state.counters["MB"] = executor.megabytes;
    }
}
BENCHMARK(BM_Chain)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Fan)->Arg(100)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadyWaits)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
