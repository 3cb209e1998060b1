#include "Features/Flows/FlowEngine.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <random>
#include <thread>

namespace vh::flows {

namespace {

using Condition = FlowEdge::Condition;
using Out = FlowNodeOutcome;

/// A flow whose nodes after the start are waits; their seconds choose lane and outcome.
struct Drawing {
    Flow flow;

    Uuid add(FlowNodeKind kind) {
        flow.nodes.push_back({Uuid::random(), std::move(kind), {}, {}});
        return flow.nodes.back().id;
    }
    void join(const Uuid& from, const Uuid& to, Condition condition = Condition::always) {
        flow.edges.push_back({Uuid::random(), from, to, condition});
    }
};

Out plannedOutcome(const FlowNode& node) {
    constexpr Out outcomes[] = {Out::success, Out::success, Out::warning, Out::failed, Out::cancelled};
    return outcomes[std::get<WaitNode>(node.kind).seconds % 5];
}

/// Ends what it was given in a random order, from a thread of its own.
class RandomExecutor : public FlowExecutor {
public:
    explicit RandomExecutor(unsigned seed) : random_(seed), ender_([this] { endAll(); }) {}
    ~RandomExecutor() override {
        {
            const std::lock_guard hold(lock_);
            isOver_ = true;
        }
        came_.notify_one();
        ender_.join();
    }

    void run(const FlowStep& step, const CancelToken&, Done done) override {
        const std::lock_guard hold(lock_);
        const auto own = lane(step.node, step.computer);
        EXPECT_TRUE(!own || ++active_[*own] == 1) << "two nodes in one lane";
        EXPECT_EQ(step.computer, step.flow.computer(step.node.id));
        EXPECT_EQ(step.before().size(), step.flow.ancestors(step.node.id).size());
        EXPECT_EQ(step.inputs().size(), step.flow.inputs(step.node.id).size());
        open_.push_back({own, plannedOutcome(step.node), std::move(done)});
        came_.notify_one();
    }
    std::optional<std::string> lane(const FlowNode& node, const FlowComputer&) const override {
        const int64_t which = std::get<WaitNode>(node.kind).seconds / 5 % 3;
        return which == 0 ? std::nullopt : std::optional(std::to_string(which));
    }

private:
    struct Open {
        std::optional<std::string> lane;
        Out outcome;
        Done done;
    };
    void endAll() {
        std::unique_lock hold(lock_);
        while (true) {
            came_.wait(hold, [this] { return isOver_ || !open_.empty(); });
            if (open_.empty())
                return;
            std::swap(open_[random_() % open_.size()], open_.back());
            const Open one = std::move(open_.back());
            open_.pop_back();
            if (one.lane)
                --active_[*one.lane];
            hold.unlock();
            one.done({one.outcome});
            one.done({Out::failed, "a second call counts for nothing"});
            hold.lock();
        }
    }

    std::mt19937 random_;
    std::mutex lock_;
    std::condition_variable came_;
    std::vector<Open> open_;
    std::map<std::string, int> active_;
    bool isOver_ = false;
    std::thread ender_;
};

struct Event {
    Uuid node;
    std::optional<Out> outcome; ///< nothing: it began
    bool operator==(const Event&) const = default;
};

/// The rules word by word. What ends when is taken from the events of the run that is checked.
class Reference {
public:
    Reference(const Flow& flow, const std::vector<Event>& seen, size_t cancelAt)
        : flow_(flow), seen_(seen), cancelAt_(cancelAt) {
        for (const FlowNode& node : flow.nodes)
            pending_.push_back(node.id);
    }

    std::vector<Event> events() {
        advance();
        while (!running_.empty()) {
            const auto ended = std::ranges::find_if(
                seen_.begin() + static_cast<ptrdiff_t>(events_.size()), seen_.end(),
                [&](const Event& event) { return event.outcome && running_.contains(event.node); });
            if (ended == seen_.end())
                return events_;
            running_.erase(ended->node);
            finish(ended->node, *ended->outcome);
            advance();
        }
        for (const Uuid& id : pending_)
            finish(id, Out::cancelled);
        return events_;
    }

private:
    void finish(const Uuid& id, Out outcome) {
        results_[id] = outcome;
        events_.push_back({id, outcome});
        isCancelled_ = isCancelled_ || ++finished_ == cancelAt_;
    }

    void advance() {
        for (size_t i = 0; i < pending_.size();) {
            const Uuid id = pending_[i];
            const auto inputs = flow_.inputs(id);
            const bool waits = std::ranges::any_of(
                inputs, [&](const FlowEdge& edge) { return !results_.contains(edge.from); });
            if (waits) {
                ++i;
                continue;
            }
            pending_.erase(pending_.begin() + static_cast<ptrdiff_t>(i));
            const bool goes = inputs.empty() || std::ranges::any_of(inputs, [&](const FlowEdge& edge) {
                                  return isSatisfied(edge.condition, results_.at(edge.from));
                              });
            if (!goes) {
                finish(id, Out::skipped);
                i = 0;
            } else if (isCancelled_) {
                finish(id, Out::cancelled);
            } else {
                events_.push_back({id, std::nullopt});
                running_.insert(id);
            }
        }
    }

    const Flow& flow_;
    const std::vector<Event>& seen_;
    const size_t cancelAt_;
    std::vector<Uuid> pending_;
    std::map<Uuid, Out> results_;
    std::set<Uuid> running_;
    std::vector<Event> events_;
    size_t finished_ = 0;
    bool isCancelled_ = false;
};

Flow randomFlow(std::mt19937& random) {
    Drawing drawing;
    drawing.add(StartNode{});
    const size_t count = 2 + random() % 9;
    for (size_t i = 1; i < count; ++i) {
        if (random() % 4 == 0)
            drawing.add(ComputerNode{FlowMachine{std::to_string(random() % 2), "", true}});
        else
            drawing.add(WaitNode{static_cast<int64_t>(random() % 1000)});
        for (size_t from = 0; from < i; ++from)
            if (from == i - 1 ? random() % 2 == 0 : random() % 3 == 0)
                drawing.join(drawing.flow.nodes[from].id, drawing.flow.nodes[i].id,
                             static_cast<Condition>(random() % 3));
    }
    std::shuffle(drawing.flow.nodes.begin(), drawing.flow.nodes.end(), random);
    return drawing.flow;
}

} // namespace

TEST(FlowEngine, EdgesLetGoByTheirTable) {
    struct Row {
        Condition condition;
        bool success, warning, failed;
    };
    for (const Row& row :
         {Row{Condition::always, true, true, true}, Row{Condition::success, true, true, false},
          Row{Condition::failure, false, false, true}}) {
        EXPECT_EQ(isSatisfied(row.condition, Out::success), row.success);
        EXPECT_EQ(isSatisfied(row.condition, Out::warning), row.warning);
        EXPECT_EQ(isSatisfied(row.condition, Out::failed), row.failed);
        EXPECT_FALSE(isSatisfied(row.condition, Out::skipped));
        EXPECT_FALSE(isSatisfied(row.condition, Out::cancelled));
    }
}

TEST(FlowEngine, DoesWhatTheRulesSayForAnyFlowOrderAndStop) {
    for (unsigned seed = 0; seed < 1500; ++seed) {
        std::mt19937 random(seed);
        const Flow flow = randomFlow(random);
        const size_t cancelAt = random() % 2 == 0 ? 0 : 1 + random() % flow.nodes.size();
        RandomExecutor executor(seed);
        const CancelToken cancel;
        std::vector<Event> seen;
        size_t finished = 0;
        const auto results = FlowEngine::run(
            flow, executor,
            [&](const Uuid& node, const FlowNodeState& state) {
                const auto* result = std::get_if<FlowNodeResult>(&state);
                seen.push_back({node, result ? std::optional(result->outcome) : std::nullopt});
                if (result && ++finished == cancelAt)
                    cancel.cancel();
            },
            cancel);
        ASSERT_EQ(seen, Reference(flow, seen, cancelAt).events()) << "seed " << seed;
        ASSERT_EQ(results.size(), flow.nodes.size()) << "seed " << seed;
    }
}

TEST(FlowEngine, KeepsResultsAndTellsLaterNodesOfThem) {
    Drawing drawing;
    const Uuid start = drawing.add(StartNode{});
    const Uuid first = drawing.add(WaitNode{1});
    const Uuid second = drawing.add(WaitNode{2});
    drawing.join(start, first);
    drawing.join(first, second);
    class Executor : public FlowExecutor {
    public:
        void run(const FlowStep& step, const CancelToken&, Done done) override {
            ran.push_back(step.node.id);
            before = step.before();
            done({Out::success, "now"});
        }
        std::vector<Uuid> ran;
        std::vector<FlowInput> before;
    } executor;
    const auto results = FlowEngine::run(drawing.flow, executor, [](const auto&, const auto&) {}, {},
                                         {{start, {}}, {first, {Out::warning, "then"}}});
    EXPECT_EQ(executor.ran, std::vector{second});
    ASSERT_EQ(executor.before.size(), 2u);
    EXPECT_EQ(executor.before[1].result.summary, "then");
    EXPECT_EQ(results.at(first).summary, "then");
    EXPECT_EQ(results.at(second).summary, "now");
}

TEST(FlowEngine, RunsTheFirstOfTwoNodesOfOneName) {
    Drawing drawing;
    const Uuid start = drawing.add(StartNode{});
    const Uuid once = drawing.add(WaitNode{1});
    drawing.join(start, once);
    drawing.flow.nodes.push_back(drawing.flow.nodes.back());
    class Executor : public FlowExecutor {
    public:
        void run(const FlowStep&, const CancelToken&, Done done) override {
            ++runs;
            done({});
        }
        int runs = 0;
    } executor;
    FlowEngine::run(drawing.flow, executor, [](const auto&, const auto&) {}, {});
    EXPECT_EQ(executor.runs, 1);
}

TEST(FlowEngine, WhatWaitsInALaneDoesNotBeginAfterAStop) {
    Drawing drawing;
    const Uuid start = drawing.add(StartNode{});
    for (int node = 0; node < 3; ++node)
        drawing.join(start, drawing.add(WaitNode{1}));
    class Executor : public FlowExecutor {
    public:
        void run(const FlowStep&, const CancelToken&, Done done) override {
            ++runs;
            end = std::move(done);
        }
        std::optional<std::string> lane(const FlowNode&, const FlowComputer&) const override { return "one"; }
        int runs = 0;
        Done end;
    } executor;
    const CancelToken cancel;
    int begun = 0;
    const auto tell = [&](const Uuid&, const FlowNodeState& state) {
        if (!std::holds_alternative<FlowNodeRunning>(state) || ++begun < 4)
            return;
        cancel.cancel(); // the last one is about to wait in its lane
        executor.end({});
    };
    const auto results = FlowEngine::run(drawing.flow, executor, tell, cancel);
    EXPECT_EQ(executor.runs, 1);
    EXPECT_EQ(
        std::ranges::count(results, Out::cancelled, [](const auto& each) { return each.second.outcome; }), 2);
}

} // namespace vh::flows
