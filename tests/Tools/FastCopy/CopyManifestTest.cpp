#include "Tools/FastCopy/CopyManifest.h"

#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Tools/FastCopy/MhlText.h"
#include "Tools/FastCopy/ProblemLines.h"
#include "Tools/FastCopy/SumsText.h"
#include "support/TempDir.h"

#include <filesystem>
#include <fmt/format.h>
#include <gmock/gmock.h>

namespace vh::copy::test {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const Date now = *parseIso8601("2026-11-22T12:00:00Z");
const std::string notUtf8 = "latin-\xE9";
const std::vector<std::string> strangeNames{"plain",  "two  blanks *", "new\nline", "back\\slash", "end\r",
                                            "<&>\"'", "señor/inner é", "-rf",       "]]>",         "#"};

/// A folder of files and the report of a verified copy into it.
class Manifests : public testing::Test {
protected:
    void add(const std::string& relative, CopiedFileState state = CopiedFileState::verified) {
        fs::create_directories(fs::path(folder / relative).parent_path());
        writeFileAtomically(folder / relative, "content of " + relative);
        report.files.push_back({"elsewhere/" + relative, folder.path(), 0, state,
                                hashOfFile(folder / relative, report.algorithm), relative});
    }
    WrittenManifest write(ManifestKind kind) {
        report.destinations = {{folder.path()}};
        return writeManifest(report, 0, kind, now);
    }
    ManifestCheck check(const std::string& path) { return checkManifest(path, {}); }

    vh::test::TempDir folder;
    CopyReport report;
};

TEST_F(Manifests, HoldEveryNameAndAreReadByOtherTools) {
    for (const HashAlgorithm algorithm :
         {HashAlgorithm::sha256, HashAlgorithm::md5, HashAlgorithm::xxhash64}) {
        report = {};
        report.algorithm = algorithm;
        for (const std::string& name : strangeNames)
            add(name);
        for (const ManifestKind kind : {ManifestKind::sums, ManifestKind::mhl}) {
            const WrittenManifest written = write(kind);
            EXPECT_THAT(written.leftOut, IsEmpty());
            const ManifestCheck found = check(written.path);
            EXPECT_EQ(found.matching, static_cast<int64_t>(strangeNames.size())) << written.path;
            EXPECT_EQ(found.files, found.matching);
            const char* const tool = algorithm == HashAlgorithm::sha256 ? "sha256sum" : "md5sum";
            if (kind == ManifestKind::mhl || algorithm == HashAlgorithm::xxhash64)
                continue;
            EXPECT_EQ(runProcess(
                          {.arguments = {tool, "--check", "--strict", written.path}, .folder = folder.path()})
                          .status,
                      0);
        }
    }
}

TEST_F(Manifests, ReadTheListsOfOtherTools) {
    for (const std::string& name : strangeNames)
        add(name);
    for (const char* words : {"sha256sum", "md5sum --binary", "sha256sum --tag", "md5sum --tag"}) {
        const auto listed =
            runProcess({.arguments = {"sh", "-c",
                                      fmt::format("find . -type f | LC_ALL=C sort | tr '\\n' '\\0'"
                                                  " | xargs -0 {} plain ./señor//inner* ./-rf",
                                                  words)},
                        .folder = folder.path()});
        writeFileAtomically(folder / "list", "# a remark\r\n\n" + listed.output);
        const ManifestCheck found = check(folder / "list");
        EXPECT_GE(found.files, 10) << words;
        EXPECT_THAT(found.differing, IsEmpty());
        fs::remove(folder / "list");
    }
    const std::string hash = "  <xxhash64be>" + hashOfFile(folder / "plain", HashAlgorithm::xxhash64) +
                             "</xxhash64be><md5> " + hashOfFile(folder / "plain", HashAlgorithm::md5) +
                             " </md5>";
    writeFileAtomically(
        folder / "list.mhl",
        "\xEF\xBB\xBF<?xml version='1.0'?><!-- by <another> tool --><hashlist version=\"1.0\">"
        "<creatorinfo><tool>hash</tool></creatorinfo><hash a='1'>" +
            hash + "<file><![CDATA[pl]]>&#x61;in</file><size>\n16 </size></hash></hashlist>\n");
    EXPECT_EQ(check(folder / "list.mhl").matching, 1);

    const std::string number = hashOfFile(folder / "plain", HashAlgorithm::xxhash64);
    std::string turned;
    for (size_t at = number.size(); at > 0; at -= 2)
        turned += number.substr(at - 2, 2);
    writeFileAtomically(folder / "list.mhl", "<hashlist version=\"1.1\"><hash><file>plain</file><xxhash64>" +
                                                 turned + "</xxhash64></hash></hashlist>");
    EXPECT_EQ(check(folder / "list.mhl").matching, 1);
}

TEST_F(Manifests, ListOnlyWhatWasVerifiedUnderANameThatIsFree) {
    add("good");
    add("bad", CopiedFileState::mismatched);
    add(notUtf8);
    const std::string first = write(ManifestKind::sums).path, second = write(ManifestKind::sums).path;
    EXPECT_NE(first, second);
    EXPECT_EQ(readFile(first), readFile(second));
    EXPECT_EQ(check(first).matching, 2);
    const WrittenManifest mhl = write(ManifestKind::mhl);
    EXPECT_THAT(test::inEnglish(mhl.leftOut),
                ElementsAre(HasSubstr("latin-\\xE9: a media hash list cannot hold this name")));
    EXPECT_EQ(check(mhl.path).files, 1);
    report.files.resize(2);
    report.files.erase(report.files.begin());
    EXPECT_EQ(write(ManifestKind::mhl).path, "") << "nothing was verified";
}

TEST_F(Manifests, TellWhatIsOtherThanListed) {
    for (const char* name : {"good", "rotten", "longer", "gone", "inner/linked", "link", "folder"})
        add(name);
    const std::string mhl = write(ManifestKind::mhl).path, sums = write(ManifestKind::sums).path;
    std::string bytes = readFile(folder / "rotten");
    bytes[3] ^= 1;
    writeFileAtomically(folder / "rotten", bytes);
    writeFileAtomically(folder / "longer", "content of longer and more");
    for (const char* name : {"gone", "link", "folder"})
        fs::remove(folder / name);
    fs::create_directory(folder / "folder");
    fs::create_symlink("good", folder / "link");
    fs::rename(folder / "inner", folder / "elsewhere");
    fs::create_symlink("elsewhere", folder / "inner");
    for (const std::string& list : {sums, mhl}) {
        const ManifestCheck found = check(list);
        EXPECT_EQ(found.matching, 1);
        EXPECT_THAT(found.differing, ElementsAre("rotten", "longer"));
        EXPECT_THAT(found.missing, ElementsAre("gone"));
        EXPECT_THAT(test::inEnglish(found.faults),
                    ElementsAre("inner/linked: a link or a file stands in the way",
                                "link: a link or a file stands in the way", "folder: not a plain file"));
    }
}

TEST_F(Manifests, StopWhenAsked) {
    add("file");
    JobControl control;
    control.progress = [&](double, std::string_view) {
        control.cancel.cancel();
    };
    const ManifestCheck found = checkManifest(write(ManifestKind::sums).path, control);
    EXPECT_TRUE(found.stopped);
    EXPECT_EQ(found.matching, 0);
}

TEST(ManifestText, RefusesWhatIsNoListAndSaysWhere) {
    const std::string md5 = "83878c91171338902e0fe0fb97a8c47a", xxh = "f5ee3ce1a06552ef";
    const auto mhl = [&](const std::string& inner) {
        return "<hashlist version=\"1.1\">\n<hash>" + inner + "</hash></hashlist>";
    };
    const std::string whole = mhl("<file>a</file><md5>" + md5 + "</md5>");
    for (const auto& [text, why] : std::vector<std::pair<std::string, std::string>>{
             {"", "names no file"},
             {"# only a remark\n", "names no file"},
             {md5 + "  a\n" + md5 + " b\n", "Line 2: no checksum and path"},
             {md5 + "0  a\n", "Line 1: no checksum and path"},
             {"z" + md5.substr(1) + "  a\n", "Line 1: no checksum and path"},
             {"MD5 (a) = " + xxh + "\n", "Line 1: no checksum and path"},
             {md5 + "  " + std::string(70000, 'a') + "\n", "Line 1: too long"},
             {md5 + "  a" + std::string(1, '\0') + "b\n", "Line 1: holds a zero byte"},
             {"\\" + md5 + "  a\\t\n", "Line 1: a backslash that stands for nothing"},
             {md5 + "  /etc/passwd\n", "Line 1: an absolute path: /etc/passwd"},
             {md5 + "  a/../../b\n", "Line 1: a path that leads out of the folder"},
             {"MD5 (..) = " + md5 + "\n", "Line 1: a path that leads out of the folder"},
             {md5 + "  ./\n", "Line 1: a path that names no file"},
             {whole.substr(0, whole.size() - 3), "Line 2: this is no XML"},
             {whole.substr(0, whole.size() - 11), "Line 2: this is no XML"},
             {whole + "<more/>", "this is no XML"},
             {whole + "more", "this is no XML"},
             {"<!DOCTYPE a [<!ENTITY b \"c\">]>" + whole,
              "Line 1: this is no XML that can be read (document types are not read)"},
             {"<files/>", "<files> begins no media hash list"},
             {"<hashlist version=\"2.0\"/>", "only version 1"},
             {"<hashlist version=\"1.1\"/>", "names no file"},
             {mhl("<md5>" + md5 + "</md5>"), "a <hash> without its <file>"},
             {mhl("<file>a</file><sha1>" + md5 + "</sha1>"), "no checksum of a kind that is known"},
             {mhl("<file>a</file><md5>" + xxh + "</md5>"), "no MD5 checksum"},
             {mhl("<file>a</file><size>-1</size>"), "no size: -1"},
             {mhl("<file>&up;/a</file>"), "Line 2: this is no XML"},
             {mhl("<file>a&#0;</file>"), "Line 2: this is no XML"},
             {mhl("<file>a&amp</file>"), "Line 2: this is no XML"},
             {mhl("<file>&#x2e;&#46;/a</file>"), "Line 2: a path that leads out of the folder"},
             {mhl("<file>" + notUtf8 + "</file>"), "Line 2: this is no XML"},
             {mhl("<file>a</md5>"), "Line 2: this is no XML"},
             {mhl("<file a=b>a</file>"), "Line 2: this is no XML"},
             {mhl("<!-- never closed"), "Line 2: this is no XML"},
         }) {
        try {
            parseManifest(text);
            ADD_FAILURE() << "read: " << text.substr(0, 200);
        } catch (const ManifestError& error) {
            EXPECT_THAT(error.what(), HasSubstr(why));
        }
    }
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<hashlist version=\"1.1\">";
    EXPECT_THROW(parseManifest(deep), ManifestError);
    EXPECT_EQ(parseManifest(whole).entries.size(), 1u);
}

TEST(ManifestText, IsReadInTimeThatGrowsWithItsLengthOnly) {
    constexpr int files = 100'000; // minutes, if the lines before each were counted
    std::string list = "<hashlist version=\"1.1\">\n";
    for (int i = 0; i < files; ++i)
        list += fmt::format("<hash><file>{}</file>\n<md5>83878c91171338902e0fe0fb97a8c47a</md5></hash>\n", i);
    EXPECT_EQ(parseManifest(list + "</hashlist>").entries.size(), files);
}

} // namespace vh::copy::test
