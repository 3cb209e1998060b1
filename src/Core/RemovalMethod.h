#pragma once

#include "Core/Describe.h"

namespace vh {

/// What becomes of an item that is removed.
enum class RemovalMethod { trash, permanent };

template <>
inline constexpr auto describe<RemovalMethod> =
    enumeration<RemovalMethod>({{RemovalMethod::trash, "trash"}, {RemovalMethod::permanent, "permanent"}});

} // namespace vh
