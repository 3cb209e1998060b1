#include "Core/InterruptedStep.h"

#include "Core/CleanState.h"
#include "Platform/Files.h"
#include "Platform/Trash.h"
#include "Platform/TrashSearch.h"

#include <chrono>

namespace vh {

namespace {

bool isThere(const RunFileRow& step) {
    return statusOf(step.path).has_value();
}

RunFileRow afterTrashing(RunFileRow step, Date runStart) {
    // The clock that stamps files lags the one that runs are timed by.
    constexpr std::chrono::seconds lag{1};
    step.place = findInTrash(step.path, std::chrono::floor<std::chrono::seconds>(runStart) - lag);
    if (!step.place)
        step.state = isThere(step) ? cleanState::inPlace : cleanState::unknown;
    return step;
}

RunFileRow afterDeleting(RunFileRow step) {
    if (isThere(step))
        step.state = cleanState::doing;
    return step;
}

RunFileRow afterRestoring(RunFileRow step) {
    if (step.place && isInTrash(*step.place, step.path)) {
        step.state = cleanState::trashed;
        return step;
    }
    step.place.reset();
    if (!isThere(step))
        step.state = cleanState::unknown;
    return step;
}

} // namespace

RunFileRow afterInterruption(RunFileRow step, Date runStart) {
    if (cleanState::isTrashed(step.state))
        return afterTrashing(std::move(step), runStart);
    if (step.state == cleanState::deleted)
        return afterDeleting(std::move(step));
    if (step.state == cleanState::restored)
        return afterRestoring(std::move(step));
    step.state = cleanState::unknown;
    return step;
}

} // namespace vh
