#pragma once

#include "Core/RunHandle.h"
#include "Features/Flows/FlowExecutor.h"
#include "Features/Flows/work/NodesRunner.h"
#include "Platform/FileLock.h"

#include <condition_variable>
#include <mutex>
#include <variant>

namespace vh::automation {

/// One run: begun and ended on the main thread, at work on its own.
struct NodesRunner::Run {
    Run(flows::Flow f, FlowStart h, FileLock l, Done d)
        : flow(std::move(f)), how(std::move(h)), done(std::move(d)), lock(std::move(l)) {}

    const flows::Flow flow;
    const FlowStart how;
    const Done done;
    const CancelToken cancel;
    std::optional<FileLock> lock;
    flows::FlowRun run; ///< the working thread's until it has ended
    std::shared_ptr<RunHandle> handle;
    std::unique_ptr<flows::FlowExecutor> executor;
    std::optional<RunWords> words; ///< of its record
    size_t finishedNodes = 0;

    struct News {
        Uuid node;
        std::variant<flows::FlowNodeState, std::string> what; ///< a state, or what the node says
    };
    /// Whether nothing else waited to be taken. Any thread.
    bool addNews(News one) {
        const std::lock_guard hold(mutex);
        news.push_back(std::move(one));
        return news.size() == 1;
    }

    /// Once the work has ended: writes the record, or gives the one that was written. Any thread.
    RunRecord finishRecord() const { return handle->finish(flows::logOutcome(run.outcome(flow)), *words); }

    std::mutex mutex; ///< of all below
    std::condition_variable changed;
    std::vector<News> news;
    bool isWorkOver = false;
    std::optional<RunRecord> record; ///< once it has ended
};

} // namespace vh::automation
