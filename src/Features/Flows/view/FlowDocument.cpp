#include "Features/Flows/view/FlowDocument.h"

#include "Features/Flows/NodesStore.h"

#include <utility>

namespace vh::app {

namespace {

/// When it was stored is no change.
bool sameContent(const flows::Flow& a, const flows::Flow& b) {
    return a.name == b.name && a.nodes == b.nodes && a.edges == b.edges;
}

} // namespace

FlowDocument::FlowDocument(flows::NodesStore& store, flows::Flow flow)
    : store_(store), flow_(std::move(flow)), stored_(flow_) {}

bool FlowDocument::edit(const std::string& step, const std::function<void(flows::Flow&)>& change) {
    flows::Flow before = flow_;
    change(flow_);
    if (sameContent(before, flow_))
        return false;
    if (step.empty() || step != step_ || undone_.empty())
        note(std::move(before));
    step_ = step;
    redone_.clear();
    settle();
    return true;
}

void FlowDocument::note(flows::Flow before) {
    undone_.push_back(std::move(before));
    if (undone_.size() > keptSteps)
        undone_.pop_front();
}

void FlowDocument::undo() {
    go(undone_, redone_);
}

void FlowDocument::redo() {
    go(redone_, undone_);
}

void FlowDocument::go(std::deque<flows::Flow>& from, std::deque<flows::Flow>& to) {
    if (from.empty())
        return;
    to.push_back(std::exchange(flow_, std::move(from.back())));
    from.pop_back();
    endStep();
    settle();
}

void FlowDocument::settle() {
    if (standing_ == Standing::saved || standing_ == Standing::changed)
        standing_ = sameContent(flow_, stored_) ? Standing::saved : Standing::changed;
}

void FlowDocument::save() {
    catchUp();
    if (standing_ == Standing::changed)
        store();
}

void FlowDocument::store() {
    stored_ = store_.save(flow_);
    flow_.updatedAt = stored_.updatedAt;
    standing_ = Standing::saved;
}

void FlowDocument::catchUp() {
    const flows::Flow* theirs = store_.flow(flow_.id);
    if (!theirs) {
        standing_ = Standing::gone;
        return;
    }
    if (sameContent(*theirs, stored_))
        return;
    const bool hadChanges = !sameContent(flow_, stored_);
    stored_ = *theirs;
    if (sameContent(flow_, stored_)) {
        standing_ = Standing::saved;
    } else if (hadChanges) {
        standing_ = Standing::conflict;
    } else {
        standing_ = Standing::conflict;
        takeTheirs();
    }
}

void FlowDocument::keepMine() {
    if (standing_ == Standing::conflict || standing_ == Standing::gone)
        store();
}

void FlowDocument::takeTheirs() {
    if (standing_ != Standing::conflict)
        return;
    note(std::exchange(flow_, stored_));
    redone_.clear();
    endStep();
    standing_ = Standing::saved;
}

} // namespace vh::app
