#include "Core/VolumeTitle.h"

#include "Core/Printable.h"
#include "Core/Texts.h"
#include "Platform/Volumes.h"

namespace vh {

std::string volumeTitle(const Texts& texts, const Volume& volume) {
    return volume.path == "/" ? texts.text("volume.system") : printable(volume.name);
}

} // namespace vh
