#include "Features/Flows/FlowProblem.h"

#include "Features/Flows/Flow.h"

#include <benchmark/benchmark.h>

namespace vh::flows {
namespace {

/// A start, some computers and copies that each come after up to five others.
Flow tangle(size_t nodes) {
    Flow flow = Flow::blank("tangle", {});
    std::get<StartNode>(flow.nodes[0].kind).trigger = OnNewFiles{"/srv/in", {}, 10};
    for (size_t i = 2; i < nodes; ++i) {
        flow.nodes.push_back(
            {Uuid::random(), ToolNode{CopyMaterialTool{{"{files}"}, {"/srv/out/{date}"}, true}}, {}, ""});
        for (size_t back = 1; back <= 5 && back < i; ++back)
            flow.edges.push_back(
                {Uuid::random(), flow.nodes[i - back].id, flow.nodes[i].id, FlowEdge::Condition::always});
    }
    return flow;
}

void problemsOfTangle(benchmark::State& state) {
    const Flow flow = tangle(1000);
    for (auto _ : state)
        benchmark::DoNotOptimize(problems(flow));
    state.counters["edges"] = static_cast<double>(flow.edges.size());
}
BENCHMARK(problemsOfTangle)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace vh::flows
