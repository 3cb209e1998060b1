#pragma once

#include "Flows/Flow.h"

#include <string>
#include <string_view>
#include <vector>

namespace vh::flows {

/// One thing that a person fills in on a node.
struct FlowField {
    enum class Kind {
        text,
        multiline,
        number,   ///< whole, as decimal digits
        toggle,   ///< "true" or "false"
        choice,   ///< one of `choices`
        list,     ///< texts, one a line
        folder,   ///< a folder's path
        paths,    ///< paths, one a line
        time,     ///< "HH:MM"
        script,   ///< name of a saved script
        flow,     ///< UUID of a flow, or empty
        computer, ///< UUID of a computer node of this flow, or empty
        volume    ///< UUID of a volume, or empty
    };
    std::string
        key; ///< path of keys as in the node's JSON, such as "tool.folderSync.source"; names it in texts, too
    Kind kind = Kind::text;
    std::string value;
    std::vector<std::string> choices; ///< raw values
    bool takesVariables = false;
    bool operator==(const FlowField&) const = default;
};

/// What a node offers to fill in, in the order in which it is shown. Choosing one may change which others there are: a
/// start's trigger, a tool's kind, a schedule's form.
std::vector<FlowField> fieldsOf(const FlowNode& node);

/// The node with one field set; false, and nothing changed, for an unknown key or a value that the field cannot hold.
[[nodiscard]] bool setField(FlowNode& node, std::string_view key, const std::string& value);

} // namespace vh::flows
