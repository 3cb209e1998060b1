#include "Core/FileKind.h"
#include "Core/FileKindTable.h"

#include <gtest/gtest.h>
#include <sstream>

namespace vh {
namespace {

TEST(FileKind, IsToldByTheName) {
    using enum FileKind;
    const std::pair<std::string_view, FileKind> cases[]{
        {"/shoot/A001_C002.MXF", video},
        {"A001.R3D", video},
        {"clip.braw", video},
        {"clip.ari", video},
        {"IMG_0001.CR3", image},
        {"scan.Jpeg", image},
        {"take.wav", music},
        {"report.docx", document},
        {"notes.md", document},
        {"backup.tar.gz", archive},
        {"backup.tgz", archive},
        {"day.7z.001", archive},
        {"raw.264", video},
        {"report.001", other},
        {"setup.exe", application},
        {"tool.deb", application},
        {"main.cpp", code},
        {"index.ts", code},
        {"Inter.woff2", font},
        {"debian.iso", diskImage},
        {"Makefile", other},
        {".profile", other},
        {".hidden.png", image},
        {"trailing.", other},
        {"odd.\xFF\xFE", other},
        {"/a.zip/README", other},
        {"", other},
        {"/", other},
    };
    for (const auto& [path, kind] : cases)
        EXPECT_EQ(rawValue(fileKindOf(path)), rawValue(kind)) << path;
}

TEST(FileKind, EachExtensionStandsInOneList) {
    for (const auto& [kind, extensions] : fileKindTable::lists) {
        std::istringstream words{std::string(extensions)};
        for (std::string word; words >> word;)
            EXPECT_EQ(rawValue(fileKindOf("x." + word)), rawValue(kind)) << word;
    }
}

TEST(FileKind, AFolderIsAFolderUnlessItIsAPackage) {
    using enum FileKind;
    const std::pair<std::string_view, FileKind> cases[]{
        {"/Applications/Notes.app", application},
        {"Notes.APP/", application},
        {"Essay.pages", document},
        {"Disk.sparsebundle", diskImage},
        {"pictures.png", folder},
        {"src", folder},
        {"example.zip", folder},
    };
    for (const auto& [path, kind] : cases)
        EXPECT_EQ(rawValue(fileKindOf(path, FileType::folder)), rawValue(kind)) << path;
}

} // namespace
} // namespace vh
