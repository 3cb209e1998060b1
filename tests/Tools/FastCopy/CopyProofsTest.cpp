#include "Tools/FastCopy/CopyProofs.h"

#include "Platform/Files.h"
#include "Tools/FastCopy/FastCopier.h"
#include "Tools/FastCopy/ProblemLines.h"
#include "support/ChildWork.h"
#include "support/FileTree.h"
#include "support/TempDir.h"

#include <csignal>
#include <filesystem>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <unistd.h>

namespace vh::copy::test {

namespace fs = std::filesystem;
using vh::test::treeOf;

/// A source, two destinations of which one holds a file of somebody's, and a folder for notes.
class Proofs : public testing::TestWithParam<CopyConflict> {
protected:
    Proofs() {
        fs::create_directories(source + "/inner");
        for (int each = 0; each < files; ++each)
            write(fmt::format("{}/inner/{}", source, each), each % 2 == 0 ? "even" : "odd");
        write(source + "/large", std::string(5 << 20, 'n'));
        fs::create_directories(places[1]);
        fs::create_directories(places[0] + "/source/inner");
        write(theirs, "theirs");
    }
    static void write(const std::string& path, const std::string& text) { writeFileAtomically(path, text); }

    CopyReport copy(CopyConflict conflict, const std::function<void(const CopyProgress&)>& progress = {}) {
        CopyProofs proofs(notes, {source}, places, HashAlgorithm::sha256);
        return FastCopier(std::make_shared<CopyControl>())
            .copy({source}, places, {.conflict = conflict, .verify = true}, progress, {}, &proofs);
    }
    /// The process is killed when everything has landed, or when everything was proven too.
    enum class Moment { landed, proven };
    void copyAndDie(CopyConflict conflict, Moment moment) {
        const auto outcome = vh::test::runInChild([&] {
            bool verifies = false;
            copy(conflict, [&](const CopyProgress& progress) {
                verifies = verifies || progress.phase == CopyPhase::verifying;
                if (verifies && (moment == Moment::landed || progress.phase == CopyPhase::copying))
                    ::raise(SIGKILL);
            });
        });
        ASSERT_EQ(outcome.status, 128 + SIGKILL) << outcome.message;
    }
    /// What tells whether a file was written again.
    std::map<std::string, FileState> states() {
        std::map<std::string, FileState> states;
        for (const std::string& place : places)
            for (const auto& each : fs::recursive_directory_iterator(place))
                if (each.is_regular_file())
                    states[each.path()] = *fileStateOf(each.path());
        return states;
    }

    static constexpr int files = 600;
    vh::test::TempDir folder;
    const std::string source = folder / "source", notes = folder / "notes";
    const std::vector<std::string> places{folder / "a", folder / "b"};
    const std::string theirs = places[0] + "/source/inner/7";
};

TEST_P(Proofs, LeaveNothingToBeDoneTwice) {
    const bool skips = GetParam() == CopyConflict::skip;
    for (const Moment moment : {Moment::landed, Moment::proven}) {
        for (const std::string& place : places)
            fs::remove_all(place + "/source");
        fs::create_directories(places[0] + "/source/inner");
        write(theirs, "theirs");
        copyAndDie(GetParam(), moment);
        const auto before = states();
        int64_t readBack = 0;
        const CopyReport report = copy(GetParam(), [&](const CopyProgress& progress) {
            if (progress.phase == CopyPhase::verifying)
                readBack = std::max(readBack, progress.bytesTotal);
        });
        EXPECT_EQ(states(), before);
        EXPECT_EQ(readBack == 0, moment == Moment::proven);
        EXPECT_EQ(report.outcome, CopyOutcome::completed) << testing::PrintToString(problemsOf(report));
        EXPECT_EQ(report.totalSkipped(), skips ? 1 : 0);
        EXPECT_EQ(report.destinations[0].replaced, GetParam() == CopyConflict::overwrite ? 1 : 0);
        EXPECT_EQ(report.totalVerified(), 2 * (files + 1) - (skips ? 1 : 0));
        EXPECT_EQ(report.totalWritten(), report.totalVerified());
        EXPECT_EQ(readFile(theirs), GetParam() == CopyConflict::overwrite ? "odd" : "theirs");
        EXPECT_EQ(readFileIfPresent(theirs + " 2").value_or(""),
                  GetParam() == CopyConflict::rename ? "odd" : "");
        for (const CopiedFile& file : report.files)
            EXPECT_EQ(file.checksum.has_value(), file.state == CopiedFileState::verified) << file.relative;
        EXPECT_TRUE(fs::is_empty(notes));
    }
}

INSTANTIATE_TEST_SUITE_P(EachConflict, Proofs,
                         testing::Values(CopyConflict::skip, CopyConflict::overwrite, CopyConflict::rename));

using ProofsOf = Proofs;

TEST_F(ProofsOf, WhatHasChangedCountNoMore) {
    copyAndDie(CopyConflict::skip, Moment::proven);
    fs::resize_file(fs::directory_iterator(notes)->path(), // the last line is torn
                    fs::file_size(fs::directory_iterator(notes)->path()) - 10);
    write(source + "/inner/1", "changed since");
    write(places[1] + "/source/inner/2", "somebody's");
    fs::remove(places[1] + "/source/large");
    const CopyReport report = copy(CopyConflict::skip);
    EXPECT_EQ(report.outcome, CopyOutcome::completed) << testing::PrintToString(problemsOf(report));
    for (const std::string& place : places)
        EXPECT_EQ(readFile(place + "/source/inner/1"), "changed since");
    EXPECT_EQ(readFile(places[1] + "/source/inner/2"), "somebody's");
    EXPECT_EQ(readFile(places[1] + "/source/large"), readFile(source + "/large"));
    EXPECT_EQ(report.totalSkipped(), 2);
    EXPECT_EQ(report.totalVerified(), 2 * (files + 1) - 2);
}

TEST_F(ProofsOf, OneCopyAreNotUsedByAnotherMeanwhile) {
    copyAndDie(CopyConflict::rename, Moment::landed);
    CopyProofs first(notes, {source}, places, HashAlgorithm::sha256);
    CopyProofs second(notes, {source}, places, HashAlgorithm::sha256);
    EXPECT_FALSE(first.isEmpty());
    EXPECT_TRUE(second.isEmpty());
    second.forget();
    EXPECT_FALSE(fs::is_empty(notes));
    EXPECT_TRUE(CopyProofs(notes, {source}, places, HashAlgorithm::md5).isEmpty());
}

} // namespace vh::copy::test
