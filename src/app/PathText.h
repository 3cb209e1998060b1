#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace vh::app {

/// A path's bytes for people, the home folder as "~". Never turned back into a path to act on.
QString displayPath(std::string_view path, std::string_view home);
/// The last component for people.
QString displayName(std::string_view path);

/// The bytes of a place that a person chose, from a path or a file's URL; "~" is the home folder. Empty when it is
/// neither.
std::string chosenPath(const QString& pathOrUrl, std::string_view home);

} // namespace vh::app
