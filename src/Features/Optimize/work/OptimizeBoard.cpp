#include "Features/Optimize/work/OptimizeBoard.h"

#include "Core/RunLog.h"
#include "Platform/MainLoop.h"

#include <algorithm>
#include <utility>

namespace vh::automation {

bool OptimizeBoard::beginRun(const std::vector<OptimizeProfile::Step>& steps, Date now, std::string detail) {
    {
        const std::lock_guard hold(mutex_);
        if (shown_.isRunning)
            return false;
        shown_.isRunning = true;
        shown_.startedAt = now;
        shown_.detail = std::move(detail);
        shown_.steps.clear();
        for (const auto& [action, payload] : steps)
            shown_.steps.push_back({.id = Uuid::random(), .action = action, .payload = payload});
        isCancelRequested_ = false;
    }
    tell();
    return true;
}

void OptimizeBoard::endRun(const RunRecord& record) {
    {
        const std::lock_guard hold(mutex_);
        shown_.isRunning = false;
        shown_.detail.clear();
        shown_.lastRecord = record;
        knowsLast_ = true;
        isCancelRequested_ = false;
    }
    tell();
}

bool OptimizeBoard::beginCheck() {
    {
        const std::lock_guard hold(mutex_);
        if (shown_.isChecking)
            return false;
        shown_.isChecking = true;
    }
    tell();
    return true;
}

void OptimizeBoard::endCheck(std::vector<OptimizeRunner::Check> checks, Date now) {
    {
        const std::lock_guard hold(mutex_);
        shown_.checks = std::move(checks);
        shown_.checkedAt = now;
        shown_.isChecking = false;
    }
    tell();
}

std::vector<OptimizeRunner::Step> OptimizeBoard::steps() const {
    const std::lock_guard hold(mutex_);
    return shown_.steps;
}

void OptimizeBoard::setStep(const OptimizeRunner::Step& step) {
    {
        const std::lock_guard hold(mutex_);
        *std::ranges::find(shown_.steps, step.id, &OptimizeRunner::Step::id) = step;
    }
    tell();
}

void OptimizeBoard::setDetail(std::string detail) {
    {
        const std::lock_guard hold(mutex_);
        shown_.detail = std::move(detail);
    }
    tell();
}

OptimizeBoard::Snapshot OptimizeBoard::snapshot(const RunLog& log) {
    std::unique_lock hold(mutex_);
    if (!knowsLast_) {
        hold.unlock();
        auto last = log.last("optimize");
        hold.lock();
        if (!std::exchange(knowsLast_, true)) // none ended meanwhile
            shown_.lastRecord = std::move(last);
    }
    return shown_;
}

void OptimizeBoard::requestCancel() {
    const std::lock_guard hold(mutex_);
    isCancelRequested_ = shown_.isRunning;
}

bool OptimizeBoard::isCancelRequested() const {
    const std::lock_guard hold(mutex_);
    return isCancelRequested_;
}

void OptimizeBoard::tell() {
    {
        const std::lock_guard hold(mutex_);
        if (std::exchange(isTelling_, true))
            return;
    }
    loop_.post([weak = weak_from_this()] {
        const auto alive = weak.lock();
        if (!alive)
            return;
        {
            const std::lock_guard hold(alive->mutex_);
            alive->isTelling_ = false;
        }
        alive->observers_.tell();
    });
}

} // namespace vh::automation
