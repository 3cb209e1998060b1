#pragma once

#include "Core/ScheduleStore.h"
#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/NodesStore.h"
#include "cli/CommandLine.h"

#include <optional>
#include <string>

namespace vh::cli {

/// The person's flows, for commands that run none.
struct FlowShelf {
    ScheduleStore schedules{ScheduleStore::fileOfUser()};
    flows::NodesStore store{flows::NodesStore::folderOfUser(), schedules};
};

/// The flow that a word names: identifier, its beginning, or name. Complains when it is none or more than one.
std::optional<flows::Flow> findFlow(Context& context, flows::NodesStore& store, const std::string& word);

/// A flow's file that anybody may have made. Complains when it is none.
std::optional<flows::Flow> readFlowFile(Context& context, const std::string& path);

/// What `check` would say of the flow.
std::vector<flows::FlowProblem> problemsOf(Context& context, const flows::Flow& flow);

constexpr size_t shownOfFlow = 8;

void describeFlowFiles(Verb& noun, CommandLine& line);
void describeFlowRuns(Verb& noun, CommandLine& line);

} // namespace vh::cli
