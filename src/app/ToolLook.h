#pragma once

#include <QString>
#include <string_view>

namespace vh::app {

/// The picture of a tool or of a pseudo identifier of the run log: a file in resources/icons without its ending.
QString toolIcon(std::string_view toolID);

} // namespace vh::app
