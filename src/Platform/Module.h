#pragma once

#include <string>
#include <string_view>

namespace vh {

/// The object that a module of the program offers: a library beside it ("../lib/varnholt/<name>.so"), opened when
/// first asked for and kept, so that what drags in dozens of libraries costs nothing before it is used. Each module
/// offers one object, with the C function "vhModule". Any thread. Throws std::runtime_error that names the module and
/// says why it cannot be opened.
void* openModule(std::string_view name);

/// Where a module of this program lies. Throws std::runtime_error.
std::string modulePath(std::string_view name);

} // namespace vh
