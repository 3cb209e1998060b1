#pragma once

#include "support/TempDir.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace vh::test {

/// What stands below /sys, /run and /dev of a machine with disks of many kinds.
class RecordedMachine {
public:
    /// A device at `path` below /sys/devices, known as `number`.
    void add(const std::string& number, const std::string& path, const std::string& udev = "") {
        const std::string device = root_ / ("sys/devices/" + path);
        std::filesystem::create_directories(device);
        std::filesystem::create_directories(root_ / "sys/dev/block");
        std::filesystem::create_symlink("../../devices/" + path, root_ / ("sys/dev/block/" + number));
        write("sys/devices/" + path + "/dev", number + "\n");
        write("run/udev/data/b" + number, udev);
    }
    /// The same for a whole disk.
    void addDisk(const std::string& number, const std::string& path, int64_t sectors,
                 const std::string& udev = "") {
        add(number, path, udev);
        write("sys/devices/" + path + "/size", std::to_string(sectors) + "\n");
        link("../devices/" + path, "sys/block/" + std::filesystem::path(path).filename().string());
    }
    /// A partition; `disk` is the path of its disk.
    void addPart(const std::string& number, const std::string& disk, const std::string& name,
                 const std::string& udev = "") {
        add(number, disk + "/" + name, udev);
        write("sys/devices/" + disk + "/" + name + "/partition", "1\n");
    }
    void write(const std::string& path, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(root_ / path).parent_path());
        std::ofstream(root_ / path) << text;
    }
    void link(const std::string& target, const std::string& path) {
        std::filesystem::create_directories(std::filesystem::path(root_ / path).parent_path());
        std::filesystem::create_symlink(target, root_ / path);
    }
    const std::string& root() const { return root_.path(); }

private:
    TempDir root_;
};

} // namespace vh::test
