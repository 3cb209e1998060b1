#include "support/FaultInjector.h"

#include "Platform/Files.h"
#include "support/ChildWork.h"
#include "support/SmallDisk.h"
#include "support/TempDir.h"

#include <fstream>
#include <gtest/gtest.h>
#include <set>

using namespace vh;
using namespace vh::test;

namespace {

const std::string oldText(3000, 'o');
const std::string newText(5000, 'n');

/// What a careless author would write: it truncates the file before the new bytes are safe.
void writeCarelessly(const std::string& path) {
    std::ofstream file;
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.open(path, std::ios::binary | std::ios::trunc);
    file << newText;
    file.close();
}

TEST(FaultInjector, catchesAWriterThatLosesTheOldFile) {
    const TempDir folder;
    const std::string path = folder / "file";
    size_t broken = 0;
    const auto setUp = [&] {
        std::ofstream(path) << oldText;
    };
    const auto check = [&](const FaultPoint&) {
        const std::string text = readFile(path);
        broken += text != oldText && text != newText;
    };
    forEachFault(
        setUp, [&] { writeCarelessly(path); }, check);
    EXPECT_GT(broken, 0u);
    broken = 0;
    forEachKill(
        setUp, [&] { writeCarelessly(path); }, check);
    EXPECT_GT(broken, 0u);
}

TEST(FaultInjector, seesCallsMadeInsideTheStandardLibrary) {
    const TempDir folder;
    const auto namesOf = [](const std::function<void()>& work) {
        countFileCalls(work);
        std::set<std::string_view> names;
        for (const FileCall& call : interception().calls)
            names.insert(call.name);
        return names;
    };
    const auto stream = namesOf([&] { writeCarelessly(folder / "a"); });
    EXPECT_TRUE(stream.contains("write") || stream.contains("writev"));
    EXPECT_TRUE(stream.contains("fopen") || stream.contains("fopen64") || stream.contains("open"));
    EXPECT_TRUE(namesOf([&] { std::filesystem::rename(folder / "a", folder / "b"); }).contains("rename"));
    EXPECT_EQ(countFileCalls([] {}), 0u);
}

TEST(FaultInjector, theFaultIsMetOnceAndOnlyByTheArmedThread) {
    const TempDir folder;
    size_t denied = 0;
    size_t elsewhere = 0;
    forEachFault([] {},
                 [&] {
                     std::thread([&] { elsewhere += !std::ofstream(folder / "other").is_open(); }).join();
                     std::ofstream(folder / "file") << "text";
                 },
                 [&](const FaultPoint& point) {
                     EXPECT_FALSE(point.thrown);
                     denied += point.what.group == CallGroup::create && point.code == EACCES;
                 });
    EXPECT_EQ(denied, 1u);
    EXPECT_EQ(elsewhere, 0u);
}

TEST(ChildWork, tellsHowTheWorkEnded) {
    EXPECT_EQ(runInChild([] {}).status, 0);
    const ChildOutcome thrown = runInChild([] { throw std::runtime_error("so it goes"); });
    EXPECT_EQ(thrown.status, 1);
    EXPECT_EQ(thrown.message, "so it goes");
    EXPECT_EQ(runInChild([] { std::abort(); }).status, 128 + SIGABRT);
    const TempDir folder;
    EXPECT_EQ(runUnprivileged([&] { readFile("/proc/1/environ"); }).message,
              "/proc/1/environ: Permission denied");
}

TEST(SmallDisk, isFullAfterItsBytes) {
    const auto outcome = onSmallDisk(256 << 10, [](const std::string& folder, SmallDisk) {
        std::ofstream file(folder + "/file", std::ios::binary);
        file << std::string(64 << 10, 'x') << std::flush;
        if (!file)
            throw std::runtime_error("there is no room at all");
        file << std::string(512 << 10, 'x') << std::flush;
        if (file)
            throw std::runtime_error("there is too much room");
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

} // namespace
