#include "Core/ItemRemoval.h"

#include "Platform/Removal.h"
#include "Platform/Trash.h"

namespace vh {

std::optional<std::string> removeItem(const std::string& path, RemovalMethod method,
                                      const std::optional<FileIdentity>& expected) {
    if (method == RemovalMethod::trash)
        return moveToTrash(path, expected);
    removePermanently(path, expected);
    return std::nullopt;
}

} // namespace vh
