#pragma once

#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowValues.h"
#include "Features/Flows/view/FlowWords.h"

#include <QVariantMap>

namespace vh::app {

/// What a run by hand has to be told, because the flow names it and only what starts it by itself would say it:
/// [{name, title, isFolder}].
QVariantList neededValues(const flows::Flow& flow, const FlowWords& words);

/// The values of such a run, from paths by their names; "~" is the home.
flows::FlowValues runValues(const QVariantMap& paths, std::string_view home);

} // namespace vh::app
