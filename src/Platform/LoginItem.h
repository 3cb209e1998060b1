#pragma once

#include <string>

namespace vh {

struct Folders;

/// Whether the desktop opens this program when the person logs in. Only an entry of our own is read and written.
bool opensAtLogin(const Folders& folders);
/// Throws SystemError.
void setOpensAtLogin(bool opens, const Folders& folders);

} // namespace vh
