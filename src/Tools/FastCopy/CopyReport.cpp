#include "Tools/FastCopy/CopyReport.h"

#include "Core/MessageCodec.h"
#include "Core/Printable.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <unordered_map>

namespace vh::copy {

bool DestinationReport::hasProblems() const {
    return !removed && (failed > 0 || mismatched > 0 || !faults.empty());
}

int64_t DestinationReport::written() const {
    return std::max<int64_t>(0, copied + cloned - badCopies);
}

int64_t DestinationReport::whole() const {
    return std::max<int64_t>(0, copied + cloned + skipped - mismatched);
}

namespace {

template <class Count>
int64_t sumOf(const CopyReport& report, Count count) {
    int64_t sum = 0;
    for (const DestinationReport& each : report.destinations)
        if (!each.removed)
            sum += std::invoke(count, each);
    return sum;
}

} // namespace

Messages CopyReport::problems() const {
    Messages all;
    std::vector<std::vector<std::string>> placesOf;
    std::unordered_map<std::string, size_t> known;
    size_t places = 0;
    for (const DestinationReport& each : destinations) {
        if (each.removed)
            continue;
        ++places;
        for (const Message& fault : each.faults) {
            const auto [found, isNew] = known.emplace(encodeJson(fault), all.size());
            if (isNew) {
                all.push_back(fault);
                placesOf.emplace_back();
            }
            auto& having = placesOf[found->second];
            if (having.empty() || having.back() != each.path)
                having.push_back(each.path);
        }
    }
    for (size_t each = 0; each < all.size(); ++each)
        if (placesOf[each].size() < places)
            all[each] = {"fast-copy.problem.at-places",
                         {{"problem", all[each]},
                          {"places", printable(fmt::format("{}", fmt::join(placesOf[each], ", ")))}}};
    return all;
}

void CopyReport::word(const Texts& texts) {
    for (DestinationReport& each : destinations)
        each.problems = linesOf(each.faults, texts);
}

bool CopyReport::hasProblems() const {
    return std::ranges::any_of(destinations, &DestinationReport::hasProblems);
}

int64_t CopyReport::totalWritten() const {
    return sumOf(*this, &DestinationReport::written);
}
int64_t CopyReport::totalSkipped() const {
    return sumOf(*this, &DestinationReport::skipped);
}
int64_t CopyReport::totalFailed() const {
    return sumOf(*this, &DestinationReport::failed);
}
int64_t CopyReport::totalMismatched() const {
    return sumOf(*this, &DestinationReport::mismatched);
}
int64_t CopyReport::totalVerified() const {
    return sumOf(*this, &DestinationReport::verified);
}
int64_t CopyReport::bytesWritten() const {
    return sumOf(*this, &DestinationReport::bytes);
}

CopyOutcome outcomeOf(const CopyReport& report, bool wasStopped) {
    if (wasStopped)
        return CopyOutcome::stopped;
    if (!report.hasProblems())
        return CopyOutcome::completed;
    return report.totalWritten() == 0 ? CopyOutcome::failed : CopyOutcome::completedWithProblems;
}

} // namespace vh::copy
