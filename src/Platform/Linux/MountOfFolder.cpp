#include "Platform/Posix/MountOfFolder.h"

#include <fcntl.h>

namespace vh {

uint64_t mountOfFolder(int folder, const struct stat& status) {
    struct statx extended {};
    if (::statx(folder, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_MNT_ID, &extended) == 0 &&
        (extended.stx_mask & STATX_MNT_ID) != 0)
        return extended.stx_mnt_id;
    return status.st_dev; // a kernel before 5.8
}

} // namespace vh
