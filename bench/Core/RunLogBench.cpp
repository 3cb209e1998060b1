#include "Core/Codec.h"
#include "Core/DatabaseLocation.h"
#include "Core/RunFiles.h"
#include "Core/RunFilter.h"
#include "Core/RunLog.h"
#include "Core/UserDefaults.h"
#include "Platform/Files.h"
#include "support/TempDir.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

namespace vh {
namespace {

RunRecord makeRecord(int number) {
    return {.id = Uuid::random(),
            .toolID = number % 3 ? "fast-copy" : "system-junk",
            .startedAt = systemNow() - std::chrono::minutes(number),
            .duration = 12.5 + number,
            .summary = fmt::format("Copied {} files to the archive", number),
            .metrics = {{"bytesCopied", 1e9 + number}, {"filesCopied", number}},
            .computer = "Ateneo",
            .details = std::map<std::string, std::string>{{"source", "/home/someone/Projects"},
                                                          {"destinations", "/media/archive/Projects"}}};
}

/// A database that holds so many records.
struct Database {
    explicit Database(int records) : defaults(dir / "defaults.json"), files(defaults) {
        defaults.set(DatabaseLocation::key, dir / "data");
        makeFolders(dir / "data");
        std::string text;
        for (int i = 0; i < records; ++i)
            text += encodeJson(makeRecord(i)) + "\n";
        writeFileAtomically(dir / "data/runs.jsonl", text);
    }
    test::TempDir dir;
    UserDefaults defaults;
    RunFiles files;
};

void loadAndFilter(benchmark::State& state) {
    Database base(20000);
    const RunFilter filter{.period = LastDays{30}, .text = "99 files"};
    const RunFilter::Surroundings dependencies{
        .toolName = {}, .thisComputer = "Ateneo", .now = systemNow(), .calendar = LocalCalendar()};
    for (auto _ : state) {
        const RunLog log(base.defaults, base.files);
        benchmark::DoNotOptimize(filter.apply(log.all(), dependencies));
    }
    const auto bytes = static_cast<double>(readFile(base.dir / "data/runs.jsonl").size());
    state.counters["bytes/record"] = bytes / 20000;
}
BENCHMARK(loadAndFilter)->Unit(benchmark::kMillisecond);

void filterOnly(benchmark::State& state) {
    Database base(20000);
    const RunLog log(base.defaults, base.files);
    const RunFilter filter{.period = LastDays{30}, .text = "99 files"};
    const RunFilter::Surroundings dependencies{
        .toolName = {}, .thisComputer = "Ateneo", .now = systemNow(), .calendar = LocalCalendar()};
    for (auto _ : state)
        benchmark::DoNotOptimize(filter.apply(log.all(), dependencies));
}
BENCHMARK(filterOnly)->Unit(benchmark::kMillisecond);

/// Includes the rewrites that a full log needs now and then.
void append(benchmark::State& state) {
    Database base(static_cast<int>(state.range(0)));
    RunLog log(base.defaults, base.files);
    int number = 0;
    for (auto _ : state)
        log.record(makeRecord(++number));
}
BENCHMARK(append)->Arg(100)->Arg(20000)->Unit(benchmark::kMicrosecond)->Iterations(5000);

} // namespace
} // namespace vh
