#pragma once

#include "Core/RunRecord.h"
#include "Core/ScheduledTask.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vh {
struct Folders;
class SuiteModule;
class Texts;
} // namespace vh

namespace vh::automation {

class ActionRun;
class Automation;
struct AutomationDependencies;

enum class FieldKind { folder, flag, choice, several };

/// One of a field's values.
struct FieldChoice {
    std::string value;
    std::string title;
};

/// One thing that an action has to be told, by which a form asks for it. Its title is the text "schedules.payload.<key>".
struct PayloadField {
    std::string_view key; ///< in the task's payload
    FieldKind kind = FieldKind::folder;
    /// The text of what is wrong when nothing was chosen; empty where that is no fault.
    std::string_view missingKey = {};
    /// Not asked for where this field has a value.
    std::string_view unlessGiven = {};
    /// What there is to choose from; the first is meant where nothing else is said.
    std::vector<FieldChoice> (*choices)(const Folders& folders, const Texts& texts) = nullptr;
    /// The text of choosing none of them; empty where one must be chosen.
    std::string_view noneKey = {};
    /// The component by which the window lets a person choose several.
    std::string_view editor = {};
};

/// An action that a schedule, a flow or the one button can start.
struct ActionRow {
    std::string_view id; ///< raw value of a ScheduledAction
    RunRecord (*run)(ActionRun& run);
    std::span<const PayloadField> fields = {};
    /// Whether it can run here; always where nothing is said.
    bool (*isThere)(const AutomationDependencies& dependencies) = nullptr;
};

using MakeModule = std::shared_ptr<SuiteModule> (*)(const Folders& folders,
                                                    const std::string& databaseFolder);

/// What a tool or feature offers where nobody sits before it: its work/Offer.cpp defines one, by the folder's name in the
/// namespace vh::features.
struct Offer {
    std::string_view tool = {};  ///< whose engine it is, by its identifier in the catalogue
    MakeModule module = nullptr; ///< where what the tool does is scanning and cleaning
    std::span<const ActionRow> actions = {};
    void (*service)(Automation& automation) = nullptr; ///< makes its service
};

/// Those of all features of the product, in its order.
std::span<const Offer* const> offers();

} // namespace vh::automation
