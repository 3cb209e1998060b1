#include "Features/Flows/FlowEngine.h"

#include "Features/Flows/FlowGraph.h"
#include "Features/Flows/Lanes.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <set>

namespace vh::flows {

bool isSatisfied(FlowEdge::Condition condition, FlowNodeOutcome outcome) {
    const bool isGood = outcome == FlowNodeOutcome::success || outcome == FlowNodeOutcome::warning;
    switch (condition) {
    case FlowEdge::Condition::success:
        return isGood;
    case FlowEdge::Condition::failure:
        return outcome == FlowNodeOutcome::failed;
    case FlowEdge::Condition::always:
        break;
    }
    return isGood || outcome == FlowNodeOutcome::failed;
}

namespace {

/// Results on their way from the threads that made them to the one that waits.
class Completions {
public:
    struct One {
        size_t node;
        FlowNodeResult result;
    };

    void put(size_t node, FlowNodeResult result) {
        const std::lock_guard hold(lock_);
        queue_.push_back({node, std::move(result)});
        // Under the lock: the waiting run may be gone as soon as it is let go.
        came_.notify_one();
    }
    One take() {
        std::unique_lock hold(lock_);
        came_.wait(hold, [this] { return !queue_.empty(); });
        One one = std::move(queue_.front());
        queue_.pop_front();
        return one;
    }

private:
    std::mutex lock_;
    std::condition_variable came_;
    std::deque<One> queue_;
};

/// One run, on one thread but for what steps ask and the results that come in.
class EngineRun {
public:
    EngineRun(const Flow& flow, FlowExecutor& executor, const FlowEngine::Update& update,
              const CancelToken& cancel)
        : flow_(flow), executor_(executor), update_(update), cancel_(cancel), graph_(flow),
          computers_(graph_.computers()), results_(flow.nodes.size()), works_(flow.nodes.size()) {}

    FlowResults finish(const FlowResults& kept) {
        begin(kept);
        advance();
        for (; running_ > 0; advance()) {
            Completions::One ended = completions_->take();
            --running_;
            const std::unique_ptr<Work> work = std::move(works_[ended.node]);
            settle(ended.node, std::move(ended.result));
            if (work)
                lanes_.leave(work->lane);
        }
        for (const size_t node : std::set<size_t>(pending_))
            settle(node, {FlowNodeOutcome::cancelled});
        return takeResults();
    }

private:
    struct Work {
        FlowStep step;
        std::optional<std::string> lane;
    };

    void begin(const FlowResults& kept) {
        for (size_t i = 0; i < flow_.nodes.size(); ++i) {
            const auto found = kept.find(flow_.nodes[i].id);
            if (found != kept.end())
                results_[i] = found->second;
            else if (graph_.placeOf(flow_.nodes[i].id) == i)
                pending_.insert(pending_.end(), i);
        }
        unsettledInputs_.resize(flow_.nodes.size());
        for (const size_t node : pending_) {
            for (const FlowGraph::Input& input : graph_.nodes()[node].inputs)
                if (input.from == FlowGraph::nowhere || !results_[input.from])
                    ++unsettledInputs_[node];
            if (unsettledInputs_[node] == 0)
                decidable_.insert(decidable_.end(), node);
        }
    }

    /// One walk over the nodes whose inputs have all ended, in the order of the flow; a skip starts it over.
    void advance() {
        for (auto next = decidable_.begin(); next != decidable_.end();) {
            const size_t node = *next;
            decidable_.erase(next);
            size_t from = node + 1;
            if (!isLetGo(node)) {
                settle(node, {FlowNodeOutcome::skipped});
                from = 0;
            } else if (cancel_.isCancelled()) {
                settle(node, {FlowNodeOutcome::cancelled});
            } else {
                start(node);
            }
            next = decidable_.lower_bound(from);
        }
    }

    bool isLetGo(size_t node) const {
        const auto& inputs = graph_.nodes()[node].inputs;
        return inputs.empty() || std::any_of(inputs.begin(), inputs.end(), [&](const auto& input) {
                   return isSatisfied(input.condition, results_[input.from]->outcome);
               });
    }

    void settle(size_t node, FlowNodeResult result) {
        pending_.erase(node);
        {
            const std::lock_guard hold(resultsLock_);
            results_[node] = std::move(result);
        }
        update_(flow_.nodes[node].id, *results_[node]);
        for (const size_t to : graph_.nodes()[node].outputs)
            if (--unsettledInputs_[to] == 0 && pending_.contains(to))
                decidable_.insert(to);
    }

    void start(size_t node) {
        const FlowNode& at = flow_.nodes[node];
        pending_.erase(node);
        ++running_;
        update_(at.id, FlowNodeRunning{});
        if (std::holds_alternative<StartNode>(at.kind) || std::holds_alternative<ComputerNode>(at.kind))
            return completions_->put(node, {});
        works_[node] =
            std::make_unique<Work>(Work{{flow_, at, computers_[node], [this, node] { return inputsOf(node); },
                                         [this, node] {
                                             return inputsOf(graph_.ancestors(node));
                                         }},
                                        executor_.lane(at, computers_[node])});
        lanes_.enter(works_[node]->lane, [this, node] { work(node); });
    }

    void work(size_t node) {
        if (cancel_.isCancelled())
            return completions_->put(node, {FlowNodeOutcome::cancelled});
        const auto wasCalled = std::make_shared<std::atomic_flag>();
        executor_.run(works_[node]->step, cancel_,
                      [completions = completions_, node, wasCalled](FlowNodeResult result) {
                          if (!wasCalled->test_and_set())
                              completions->put(node, std::move(result));
                      });
    }

    std::vector<FlowInput> inputsOf(size_t node) const {
        std::vector<size_t> places;
        for (const FlowGraph::Input& input : graph_.nodes()[node].inputs)
            places.push_back(input.from);
        return inputsOf(places);
    }
    std::vector<FlowInput> inputsOf(const std::vector<size_t>& places) const {
        const std::lock_guard hold(resultsLock_);
        std::vector<FlowInput> inputs;
        for (const size_t place : places)
            if (results_[place])
                inputs.push_back({flow_.nodes[place].id, *results_[place]});
        return inputs;
    }

    FlowResults takeResults() {
        FlowResults results;
        for (size_t i = 0; i < results_.size(); ++i)
            if (results_[i])
                results.emplace(flow_.nodes[i].id, std::move(*results_[i]));
        return results;
    }

    const Flow& flow_;
    FlowExecutor& executor_;
    const FlowEngine::Update& update_;
    const CancelToken& cancel_;
    const FlowGraph graph_;
    const std::vector<FlowComputer> computers_;
    mutable std::mutex resultsLock_; ///< of results_: written by the run's thread alone, read by steps
    std::vector<std::optional<FlowNodeResult>> results_;
    std::vector<std::unique_ptr<Work>> works_; ///< of nodes that run
    std::vector<size_t> unsettledInputs_;
    std::set<size_t> pending_;
    std::set<size_t> decidable_; ///< pending ones whose inputs have all ended
    Lanes lanes_;
    size_t running_ = 0;
    const std::shared_ptr<Completions> completions_ = std::make_shared<Completions>();
};

} // namespace

FlowResults FlowEngine::run(const Flow& flow, FlowExecutor& executor, const Update& update,
                            const CancelToken& cancel, const FlowResults& kept) {
    return EngineRun(flow, executor, update, cancel).finish(kept);
}

} // namespace vh::flows
