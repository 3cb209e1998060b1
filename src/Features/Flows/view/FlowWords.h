#pragma once

#include "Core/Texts.h"
#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/FlowRun.h"

#include <QString>
#include <QVariantList>
#include <span>
#include <string>
#include <string_view>

namespace vh::app {

/// One node kind of each case, with nothing filled in, in the order of the cases.
std::span<const flows::FlowNodeKind> emptyKinds();

/// What flows and their parts are called on the page of flows. Any thread.
class FlowWords {
public:
    FlowWords(const Texts& texts, std::string home) : texts_(texts), home_(std::move(home)) {}

    /// Of a kind by the name of its case, such as "copy".
    QString kindTitle(std::string_view kind) const;
    static QString kindIcon(std::string_view kind);
    /// [{value, title, icon}], the start only when it is wanted.
    QVariantList kindOptions(bool withStart) const;

    /// The node's own title, else what its kind and what it does are called.
    QString title(const flows::FlowNode& node) const;
    QString ownTitle(const flows::FlowNode& node) const;
    /// What it works on, in a few words; may be empty.
    QString detail(const flows::FlowNode& node) const;
    QString icon(const flows::FlowNode& node) const;

    /// "Starts when new files lie still for 10 s in Inbox".
    QString startLine(const flows::FlowTrigger& trigger) const;
    QString startLine(const flows::Flow& flow) const;

    QString condition(flows::FlowEdge::Condition condition) const;
    QString outcome(flows::FlowNodeOutcome outcome) const;
    QString trigger(flows::FlowRunTrigger trigger) const;
    QString problem(const flows::FlowProblem& problem) const;

    QString text(std::string_view key, const std::vector<TextArgument>& arguments = {}) const;
    QString duration(double seconds) const;
    const Texts& texts() const { return texts_; }

private:
    QString place(std::string_view path) const;
    QString list(const std::vector<std::string>& texts) const;
    QString toolDetail(const FleetTool& tool) const;
    QString startDetail(const flows::FlowTrigger& trigger) const;

    Texts texts_;
    std::string home_;
};

} // namespace vh::app
