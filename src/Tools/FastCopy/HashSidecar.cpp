#include "Tools/FastCopy/HashSidecar.h"

#include "Platform/Files.h"

#include <filesystem>
#include <fmt/format.h>

namespace vh::copy {

namespace {

constexpr unsigned readableMode = 0644; ///< as the image's

/// sha256sum marks a line whose name holds what would end it, and writes that in two characters.
std::string lineOf(std::string_view hash, std::string_view name) {
    std::string escaped;
    for (const char each : name)
        if (each == '\\')
            escaped += "\\\\";
        else if (each == '\n')
            escaped += "\\n";
        else if (each == '\r')
            escaped += "\\r";
        else
            escaped += each;
    return fmt::format("{}{}  {}\n", escaped.size() == name.size() ? "" : "\\", hash, escaped);
}

} // namespace

std::string sidecarOf(const std::string& image) {
    return image + ".sha256";
}

void writeHashSidecar(const std::string& image, std::string_view sha256) {
    writeFileAtomically(sidecarOf(image), lineOf(sha256, std::filesystem::path(image).filename().string()),
                        readableMode);
}

} // namespace vh::copy
