#include "Platform/Module.h"

#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>

namespace vh {

void* openModule(std::string_view name) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    const auto path = program.parent_path().parent_path() / fmt::format("lib/varnholt/{}.so", name);
    // Libraries such as GLib never leave a process again, so the module stays as well.
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const entry = library != nullptr ? ::dlsym(library, "vhModule") : nullptr;
    if (entry == nullptr)
        throw std::runtime_error(fmt::format("{}: {}", name, ::dlerror()));
    return reinterpret_cast<void* (*)()>(entry)();
}

} // namespace vh
