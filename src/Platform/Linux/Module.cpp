#include "Platform/Module.h"

#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>

namespace vh {

std::string modulePath(std::string_view name) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    return (program.parent_path().parent_path() / fmt::format("lib/varnholt/{}.so", name)).string();
}

void* openModule(std::string_view name) {
    // Libraries such as GLib never leave a process again, so the module stays as well.
    void* const library = ::dlopen(modulePath(name).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const entry = library != nullptr ? ::dlsym(library, "vhModule") : nullptr;
    if (entry == nullptr)
        throw std::runtime_error(fmt::format("{}: {}", name, ::dlerror()));
    return reinterpret_cast<void* (*)()>(entry)();
}

} // namespace vh
