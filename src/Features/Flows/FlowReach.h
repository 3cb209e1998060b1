#pragma once

#include "Features/Flows/Flow.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace vh::flows {

/// What a check asks of a flow again and again, found out in one go over its nodes and edges. Nodes are named by their
/// place in the flow, which must not change meanwhile; the flow may be anything that a file can hold.
class FlowReach {
public:
    explicit FlowReach(const Flow& flow);

    /// The first of that identifier.
    const FlowNode* node(const Uuid& id) const;

    /// Goes through the flow as a run from `start` would.
    void follow(size_t start);
    /// Whether a run comes to it: a node that is after itself, after something that is missing, or named like one
    /// before it, never has its turn.
    bool isReached(size_t node) const { return isReached_[node] && waitsFor_[node] == 0; }

    struct Computers {
        const FlowComputer* only = nullptr;
        bool areSeveral = false;
    };
    /// Those before it.
    Computers computers(size_t node) const { return computers_[node]; }

private:
    void settle(size_t node);

    const Flow& flow_;
    std::unordered_map<Uuid, size_t> index_;
    std::vector<std::vector<size_t>> next_;
    std::vector<size_t> waitsFor_; ///< edges whose beginning has not had its turn
    std::vector<bool> isReached_;
    std::vector<Computers> computers_;
};

} // namespace vh::flows
