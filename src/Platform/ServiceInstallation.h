#pragma once

#include <span>
#include <string>
#include <string_view>

namespace vh {

/// A file that tells the system about a service. In its text "@program@" stands for the path of the service's program.
struct ServiceFile {
    std::string_view path; ///< where it goes, with its leading "/"
    std::string_view text;
};

/// What a service's program, such as "varnholt-helper", does to make itself known to the system.
struct ServiceInstallation {
    std::string program;                       ///< name of the program
    std::string unit;                          ///< of the service manager
    std::span<const std::string_view> modules; ///< that the program opens (Platform/Module.h)
    /// In the order in which they are written: the last one lets the service be started.
    std::span<const ServiceFile> files;
    /// This file is there when a package brought the service, and then the files above are the package's care.
    std::string_view packageFile;
};

/// Copies the running program and its modules to where only root changes them, unless they lie in such a place, writes
/// the files and tells bus and service manager; a service that runs is asked to end, so that the next call starts this
/// one. `root` is a folder that stands for "/", "" for the system itself, which alone is told. Blocks. Repairs what an
/// earlier one left undone. Throws std::runtime_error.
void installService(const ServiceInstallation& service, const std::string& root);
/// Takes all of it away again; no failure when nothing is there. Throws std::runtime_error.
void uninstallService(const ServiceInstallation& service, const std::string& root);

} // namespace vh
