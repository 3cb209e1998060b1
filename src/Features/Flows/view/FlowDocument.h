#pragma once

#include "Features/Flows/Flow.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace vh::flows {
class NodesStore;
}

namespace vh::app {

/// A flow while it is edited: the way back and forth through its changes, and how it stands to what is stored, which
/// other processes may change. Main thread.
class FlowDocument {
public:
    enum class Standing {
        saved,
        changed,  ///< not stored yet
        conflict, ///< changed here and elsewhere; saving would write over theirs
        gone      ///< removed elsewhere
    };
    static constexpr size_t keptSteps = 100;

    /// `flow` is what the store has.
    FlowDocument(flows::NodesStore& store, flows::Flow flow);

    const flows::Flow& flow() const { return flow_; }
    Standing standing() const { return standing_; }

    /// Changes that follow each other with the same step are one step back; an empty one is a step of its own. False
    /// when nothing changed.
    bool edit(const std::string& step, const std::function<void(flows::Flow&)>& change);
    /// The next change is a step of its own.
    void endStep() { step_.clear(); }
    bool canUndo() const { return !undone_.empty(); }
    bool canRedo() const { return !redone_.empty(); }
    void undo();
    void redo();

    /// Stores what is not stored yet, unless another process changed the flow. Throws SystemError.
    void save();
    /// Looks at what the store has now. Without changes of its own it follows, and undo leads back.
    void catchUp();
    /// In a conflict, or when it is gone: stores this one. Throws SystemError.
    void keepMine();
    /// In a conflict: what is stored takes the place of this one, which undo brings back.
    void takeTheirs();

private:
    void store();
    void go(std::deque<flows::Flow>& from, std::deque<flows::Flow>& to);
    void note(flows::Flow before);
    void settle();

    flows::NodesStore& store_;
    flows::Flow flow_;
    flows::Flow stored_;
    Standing standing_ = Standing::saved;
    std::string step_;
    std::deque<flows::Flow> undone_; ///< newest last
    std::deque<flows::Flow> redone_; ///< newest last
};

} // namespace vh::app
