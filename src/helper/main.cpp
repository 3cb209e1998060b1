#include "Platform/Host.h"
#include "helper/Installation.h"
#include "helper/Options.h"
#include "helper/Serving.h"

#include <cstdio>
#include <stdexcept>

namespace vh::helper {

namespace {

void requireRoot(const char* what) {
    if (!isAdministrator())
        throw std::runtime_error(std::string("Only root may ") + what + ".");
}

void run(const Options& options) {
    switch (options.verb) {
    case Options::Verb::serve:
        requireRoot("serve the system bus");
        return serve(options.idleLimit);
    case Options::Verb::install:
        if (options.root.empty())
            requireRoot("install the helper");
        return installService(installation(), options.root);
    case Options::Verb::uninstall:
        if (options.root.empty())
            requireRoot("uninstall the helper");
        return uninstallService(installation(), options.root);
    case Options::Verb::version:
        std::puts("varnholt-helper " VH_VERSION);
        return;
    case Options::Verb::help:
        std::fputs(usage, stdout);
    }
}

} // namespace

} // namespace vh::helper

int main(int argc, char** argv) {
    using namespace vh::helper;
    try {
        run(readOptions({argv + 1, argv + argc}));
        return 0;
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "%s\n%s", error.what(), usage);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "varnholt-helper: %s\n", error.what());
        return 1;
    }
}
