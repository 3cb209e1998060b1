// sync_bench plan|apply SOURCE DESTINATION: compares two folders, with deletes, and carries the plan out. Prints the
// microseconds of the whole, the actions, the errors and the bytes of memory that the plan took for each item.
#include "Tools/FolderSync/SyncEngine.h"

#include <chrono>
#include <fmt/format.h>
#include <string_view>
#include <sys/resource.h>

namespace {

int64_t peakBytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return int64_t{usage.ru_maxrss} * 1024;
}

} // namespace

int main(int count, char** arguments) {
    using namespace vh::sync;
    if (count != 4)
        return 2;
    SyncPair pair;
    pair.source = arguments[2];
    pair.destination = arguments[3];
    pair.deleteExtraneous = true;
    const int64_t before = peakBytes();
    const auto start = std::chrono::steady_clock::now();
    const SyncPlan plan = SyncEngine::plan(pair);
    const int64_t items = 2 * (plan.unchanged + plan.updates()) + plan.copies() + plan.deletes();
    const int64_t bytesEach = (peakBytes() - before) / std::max<int64_t>(items, 1);
    SyncResult result;
    if (std::string_view(arguments[1]) == "apply")
        result = SyncEngine::apply(plan, pair);
    const auto took = std::chrono::steady_clock::now() - start;
    fmt::print("{} {} {} {}\n", std::chrono::duration_cast<std::chrono::microseconds>(took).count(),
               plan.actions.size(), result.errors.size(), bytesEach);
}
