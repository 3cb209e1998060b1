#pragma once

#include "Platform/ServiceMessage.h"

#include <array>

/// What the window and the commands may ask of the root helper: one table, read by both sides.
namespace vh::helper {

namespace identity {
inline constexpr std::string_view launchDaemonPlistName = "com.varnholt.helper.plist";
inline constexpr std::string_view appBundleID = "com.varnholt.app";
inline constexpr std::string_view helperBundleID = "com.varnholt.helper";
inline constexpr std::string_view machServiceName = helperBundleID;
/// The helper's program, beside the window's and the command line's.
inline constexpr std::string_view program = "varnholt-helper";
} // namespace identity

/// The domain of refusals that are the helper's own.
inline constexpr std::string_view policyDomain = "com.varnholt.helper.policy";

inline ServiceIdentity helperIdentity() {
    return {std::string(identity::machServiceName), "/com/varnholt/helper", "com.varnholt.helper1",
            std::string(policyDomain), std::string(identity::appBundleID)};
}

/// What the system's authority asks the person about, one action a kind of work.
namespace actions {
inline constexpr std::string_view maintenance = "com.varnholt.helper.maintenance";
inline constexpr std::string_view removal = "com.varnholt.helper.removal";
inline constexpr std::string_view install = "com.varnholt.helper.install";
inline constexpr std::string_view devices = "com.varnholt.helper.devices";
inline constexpr std::string_view accounts = "com.varnholt.helper.accounts";
} // namespace actions

namespace methods {
inline constexpr ServiceMethod ping{"Ping", "", "s", ""};
inline constexpr ServiceMethod removeAllowedItem{"RemoveAllowedItem", "y", "b", actions::removal};
inline constexpr ServiceMethod sizeOfAllowedDirectory{"SizeOfAllowedDirectory", "y", "x", ""};
inline constexpr ServiceMethod runMaintenanceTask{"RunMaintenanceTask", "s", "bs", actions::maintenance};
inline constexpr ServiceMethod startDeviceJob{"StartDeviceJob", "y", "s", actions::devices};
inline constexpr ServiceMethod deviceJobStatus{"DeviceJobStatus", "s", "y", ""};
inline constexpr ServiceMethod cancelDeviceJob{"CancelDeviceJob", "s", "b", ""};
inline constexpr ServiceMethod removeApplication{"RemoveApplication", "y", "b", actions::removal};
inline constexpr ServiceMethod installPackage{"InstallPackage", "y", "bs", actions::install};
inline constexpr ServiceMethod installUnverifiedPackage{"InstallUnverifiedPackage", "y", "bs",
                                                        actions::install};
inline constexpr ServiceMethod installApplication{"InstallApplication", "y", "bs", actions::install};
inline constexpr ServiceMethod manageLocalAccount{"ManageLocalAccount", "y", "ys", actions::accounts};
inline constexpr ServiceMethod applyCompanyAdmin{"ApplyCompanyAdmin", "y", "y", actions::accounts};
inline constexpr ServiceMethod companyAdminPassword{"CompanyAdminPassword", "", "ss", actions::accounts};
} // namespace methods

inline constexpr std::array helperMethods{methods::ping,
                                          methods::removeAllowedItem,
                                          methods::sizeOfAllowedDirectory,
                                          methods::runMaintenanceTask,
                                          methods::startDeviceJob,
                                          methods::deviceJobStatus,
                                          methods::cancelDeviceJob,
                                          methods::removeApplication,
                                          methods::installPackage,
                                          methods::installUnverifiedPackage,
                                          methods::installApplication,
                                          methods::manageLocalAccount,
                                          methods::applyCompanyAdmin,
                                          methods::companyAdminPassword};

} // namespace vh::helper
