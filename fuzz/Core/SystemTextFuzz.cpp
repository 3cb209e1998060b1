#include "Core/Csv.h"
#include "Core/PathAllowlist.h"
#include "Core/Printable.h"
#include "Platform/Linux/TrashInfo.h"
#include "Platform/Volumes.h"

#include <cstdlib>
#include <simdjson.h>

/// Texts that come from outside: mount tables, trash records, file names.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    vh::parseMountInfo(text);
    vh::parseTrashInfo(text);

    const std::string shown = vh::printable(text);
    if (!simdjson::validate_utf8(shown) || shown.find('\n') != std::string::npos)
        std::abort();
    // What the list allows stays allowed once it is in its normal form, and never climbs out.
    const vh::PathAllowlist list({"/home/a/.cache"});
    if (list.allows(text)) {
        const std::string path = vh::PathAllowlist::normalize(text);
        if (!list.allows(path) || path.find("/../") != std::string::npos)
            std::abort();
    }
    vh::csvField(text, ';');
    return 0;
}
