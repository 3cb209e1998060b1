#include "Features/Flows/FolderArrivals.h"

#include "Platform/Files.h"
#include "support/TempDir.h"
#include "support/TurnedLoop.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace vh::flows {

namespace {

using namespace std::chrono_literals;

class FolderArrivalsTest : public testing::Test {
protected:
    void watch(std::vector<std::string> extensions = {}) {
        arrivals_ = std::make_unique<FolderArrivals>(
            loop_, OnNewFiles{folder_.path(), std::move(extensions), 10},
            [this](const std::vector<std::string>& files) {
                for (const std::string& file : files)
                    offered_.push_back(file.substr(folder_.path().size() + 1));
                return takes_;
            },
            loop_.clock());
    }
    void write(const std::string& name, const std::string& text) {
        std::ofstream(folder_ / name, std::ios::app) << text;
    }
    /// What was offered while time passed.
    std::vector<std::string> after(std::chrono::seconds time) {
        loop_.pump();
        loop_.advance(time);
        return std::exchange(offered_, {});
    }

    using Names = std::vector<std::string>;
    test::TempDir folder_;
    test::TurnedLoop loop_;
    std::unique_ptr<FolderArrivals> arrivals_;
    Names offered_;
    bool takes_ = true;
};

} // namespace

TEST_F(FolderArrivalsTest, OffersFilesOnceThatCameAndLieStill) {
    write("old.mov", "x");
    watch({"mov"});
    write("old.mov", "more");
    write("a.MOV", "x");
    write("b.txt", "x");
    std::filesystem::create_directory(folder_ / "folder.mov");
    EXPECT_EQ(after(9s), Names{});
    write("a.MOV", "still being written");
    EXPECT_EQ(after(9s), Names{});
    EXPECT_EQ(after(2s), Names{"a.MOV"});
    EXPECT_EQ(after(60s), Names{});
    std::filesystem::remove(folder_ / "a.MOV");
    loop_.pump();
    loop_.advance(1s);
    write("a.MOV", "another of that name");
    EXPECT_EQ(after(12s), Names{"a.MOV"});
}

TEST_F(FolderArrivalsTest, WaitsForTheNameOfACopyThatIsDone) {
    watch();
    for (const char* name : {".hidden", "a.part", "b.CRDOWNLOAD", "c.varnholt-partial", "gone"})
        write(name, "x");
    loop_.pump();
    std::filesystem::remove(folder_ / "gone");
    EXPECT_EQ(after(30s), Names{});
    std::filesystem::rename(folder_ / "a.part", folder_ / "a");
    EXPECT_EQ(after(11s), Names{"a"});
}

TEST_F(FolderArrivalsTest, OffersAgainWhatWasRefused) {
    watch();
    takes_ = false;
    write("a", "x");
    EXPECT_EQ(after(10s), Names{"a"});
    takes_ = true;
    EXPECT_EQ(after(3s), Names{"a"});
    EXPECT_EQ(after(30s), Names{});
}

TEST_F(FolderArrivalsTest, IsNotHeldUpByAClockTurnedBack) {
    watch();
    write("a", "x");
    loop_.pump();
    loop_.setDate(test::TurnedLoop::defaultStart - std::chrono::hours(24 * 365));
    EXPECT_EQ(after(25s), Names{"a"});
}

TEST_F(FolderArrivalsTest, FindsAllOfAFloodAndTheEndOfTheFolder) {
    watch();
    for (int i = 0; i < 20000; ++i) // more than the system's queue holds
        write("file" + std::to_string(i), "");
    EXPECT_EQ(after(12s).size(), 20000u);
    std::filesystem::remove_all(folder_.path());
    loop_.pump();
    loop_.advance(1s);
    EXPECT_TRUE(arrivals_->isGone());
}

} // namespace vh::flows
