#include "Tools/FastCopy/HashSidecar.h"

#include "Platform/Files.h"
#include "Tools/FastCopy/SumsText.h"

#include <filesystem>

namespace vh::copy {

namespace {

constexpr unsigned readableMode = 0644; ///< as the image's

} // namespace

std::string sidecarOf(const std::string& image) {
    return image + ".sha256";
}

void writeHashSidecar(const std::string& image, std::string_view sha256) {
    const std::string name = std::filesystem::path(image).filename().string();
    writeFileAtomically(sidecarOf(image), sumLine(HashAlgorithm::sha256, sha256, name), readableMode);
}

} // namespace vh::copy
