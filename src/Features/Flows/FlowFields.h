#pragma once

#include "Core/Texts.h"
#include "Features/Flows/Flow.h"

#include <string>
#include <string_view>
#include <vector>

/// Texts of fields: the label of a field is "nodes.field." and the last part of its key, so that what means the same is
/// called the same everywhere; a choice is "nodes.choice.", that part, "." and the raw value. For a key that ends in
/// "kind" the part before belongs to it: "nodes.field.schedule-kind". Ask fieldTitle and choiceTitle.
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
    /// Path of keys as in the node's JSON without unlabelled ones, such as "tool.folderSync.source"; which of several
    /// cases it is has a "kind" of its own: "start.kind", "start.schedule.kind", "tool.kind", "computer.kind".
    std::string key;
    Kind kind = Kind::text;
    std::string value;
    std::vector<std::string> choices; ///< raw values
    bool takesVariables = false;
    bool operator==(const FlowField&) const = default;
};

/// What a node offers to fill in, in the order in which it is shown. Choosing one may change which others there are: a
/// start's trigger, a tool's kind, a schedule's form. Presets and passwords are not offered, nor what only tells a
/// person what an identifier stands for: "start.flowFinished.name", "start.diskMounted.label".
std::vector<FlowField> fieldsOf(const FlowNode& node);

/// The node with one field set; false, and nothing changed, for an unknown key or a value that the field cannot hold.
/// Takes the keys of names and labels too.
[[nodiscard]] bool setField(FlowNode& node, std::string_view key, const std::string& value);

/// For people.
std::string fieldTitle(std::string_view key, const Texts& texts);
std::string choiceTitle(std::string_view key, std::string_view choice, const Texts& texts);

} // namespace vh::flows
