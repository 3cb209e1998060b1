#pragma once

#include <string>

namespace vh {

struct Folders;

/// A folder in which every desktop keeps a person's files.
enum class UserFolder { downloads, desktop, documents, publicShare };

/// Where it lies, by the person's own settings, without a trailing slash. It may be missing.
std::string userFolder(UserFolder folder, const Folders& folders);

} // namespace vh
