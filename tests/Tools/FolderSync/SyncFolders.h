#pragma once

#include "Core/Texts.h"
#include "Platform/Files.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "support/TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace vh::sync::test {

/// Faults of a plan or a run, in English.
inline std::vector<std::string> inEnglish(const Messages& faults) {
    return linesOf(faults, Texts(Language::en));
}

/// A source, a destination, and a Trash of its own.
class SyncFolders : public testing::Test {
protected:
    SyncFolders() {
        ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
        pair.source = folder / "source";
        pair.destination = folder / "destination";
        pair.deleteExtraneous = true;
        clear();
    }
    ~SyncFolders() override { ::unsetenv("XDG_DATA_HOME"); }

    void clear() {
        std::filesystem::remove_all(folder / "data");
        for (const std::string& each : {pair.source, pair.destination}) {
            std::filesystem::remove_all(each);
            std::filesystem::create_directories(each);
        }
    }
    std::string from(const std::string& relative) const { return pair.source + "/" + relative; }
    std::string to(const std::string& relative) const { return pair.destination + "/" + relative; }
    static void write(const std::string& path, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        writeFileAtomically(path, text);
    }
    SyncResult run(const SyncEngine::Steering& steering = {}) const {
        return SyncEngine::apply(SyncEngine::plan(pair), pair, steering);
    }

    vh::test::TempDir folder;
    const std::string trash = folder / "data/Trash/files";
    SyncPair pair;
};

} // namespace vh::sync::test
