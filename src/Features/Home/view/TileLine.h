#pragma once

class QString;

namespace vh::app {

/// As much of a text as a tile has room for: its first sentence; of a long one what stands before a comma, colon or
/// bracket, or else as many words as fit and "…".
QString tileLine(const QString& text);

} // namespace vh::app
