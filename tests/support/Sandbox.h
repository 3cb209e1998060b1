#pragma once

#include "Core/CleanJob.h"
#include "Core/RunFiles.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Tools/SystemJunk/SystemJunkConfiguration.h"
#include "support/TempDir.h"

#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/stat.h>

namespace vh::junk::test {

namespace fs = std::filesystem;

/// A home of its own, with its temporary folder in it unless told otherwise; the environment points there meanwhile.
class Sandbox {
public:
    explicit Sandbox(const std::string& temporary = {}) {
        set("HOME", dir_.path());
        set("TMPDIR", temporary.empty() ? dir_ / "tmp" : temporary);
        for (const char* name : {"XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"})
            set(name, "");
        set("XDG_RUNTIME_DIR", dir_ / "run");
        for (const char* folder : {".cache", ".local/state", "tmp", "run"})
            fs::create_directories(dir_ / folder);
    }
    ~Sandbox() {
        for (const auto& [name, value] : before_)
            if (value)
                ::setenv(name.c_str(), value->c_str(), 1);
            else
                ::unsetenv(name.c_str());
    }

    std::string operator/(std::string_view name) const { return dir_ / name; }
    std::string cache(std::string_view name) const { return dir_ / ".cache/" + std::string(name); }
    SystemJunkConfiguration configuration() const {
        return SystemJunkConfiguration::userDefaults(Folders::ofUser());
    }

private:
    void set(const std::string& name, const std::string& value) {
        const char* old = std::getenv(name.c_str());
        before_[name] = old == nullptr ? std::nullopt : std::optional<std::string>(old);
        ::setenv(name.c_str(), value.c_str(), 1);
    }

    std::map<std::string, std::optional<std::string>> before_;
    vh::test::TempDir dir_;
};

/// What a process has open of the log while it cleans.
struct Stores {
    UserDefaults defaults{UserDefaults::fileOfUser()};
    RunFiles files{defaults};
    RunLog log{defaults, files};
    RunJournals journals{RunJournals::folderOfUser(), log, files};
    Texts texts{Language::en};

    RunStores all() { return {log, files, journals}; }
};

/// As if nobody had used it for an hour, nor the folders that it lies in.
inline void age(const fs::path& path) {
    const timespec hourAgo{::time(nullptr) - 3600, 0};
    const timespec both[]{hourAgo, hourAgo};
    for (fs::path each = path;
         each != each.root_path() && each.filename() != ".cache" && each.filename() != "tmp";
         each = each.parent_path())
        ::utimensat(AT_FDCWD, each.c_str(), both, AT_SYMLINK_NOFOLLOW);
}

inline void write(const std::string& path, std::string_view bytes) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << bytes;
    age(path);
}

inline std::set<std::string> paths(const ScanReport& report) {
    std::set<std::string> found;
    for (const ScanItem& item : report.items)
        found.insert(item.path);
    return found;
}

inline CleanSelection only(const ScanReport& report, std::string_view path, RemovalMethod method) {
    CleanSelection selection{{}, method};
    for (const ScanItem& item : report.items)
        if (item.path == path)
            selection.itemIDs.insert(item.id);
    return selection;
}

} // namespace vh::junk::test
