#pragma once

#include "Core/Describe.h"

namespace vh {

/// A chore of the system, named in schedules, flows and recipes.
enum class MaintenanceTask {
    flushDNS,
    rebuildLaunchServices,
    resetQuickLook,
    clearFontCaches,
    restartFinder,
    restartDock,
    reindexSpotlight,
    purgeMemory,
    verifyBootVolume,
    downloadUpdates,
    restartMac
};

template <>
inline constexpr auto describe<MaintenanceTask> =
    enumeration<MaintenanceTask>({{MaintenanceTask::flushDNS, "flush-dns"},
                                  {MaintenanceTask::rebuildLaunchServices, "rebuild-launchservices"},
                                  {MaintenanceTask::resetQuickLook, "reset-quicklook"},
                                  {MaintenanceTask::clearFontCaches, "clear-font-caches"},
                                  {MaintenanceTask::restartFinder, "restart-finder"},
                                  {MaintenanceTask::restartDock, "restart-dock"},
                                  {MaintenanceTask::reindexSpotlight, "reindex-spotlight"},
                                  {MaintenanceTask::purgeMemory, "purge-memory"},
                                  {MaintenanceTask::verifyBootVolume, "verify-boot-volume"},
                                  {MaintenanceTask::downloadUpdates, "download-updates"},
                                  {MaintenanceTask::restartMac, "restart-mac"}});

} // namespace vh
