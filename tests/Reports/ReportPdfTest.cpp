#include "Reports/ReportPdf.h"

#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Reports/Pagination.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>

namespace vh::reports {
namespace {

using testing::HasSubstr;

TEST(Pagination, EveryLineStandsOnOnePage) {
    const struct {
        size_t lines, onFirst, onOthers;
        std::vector<PageLines> pages;
    } cases[]{
        {0, 10, 20, {{0, 0}}},
        {0, 0, 0, {{0, 0}}},
        {10, 10, 20, {{0, 10}}},
        {11, 10, 20, {{0, 10}, {10, 1}}},
        {50, 10, 20, {{0, 10}, {10, 20}, {30, 20}}},
        {9, 2, 20, {{0, 0}, {0, 9}}},
        {2, 2, 20, {{0, 2}}},
        {2, 0, 0, {{0, 0}, {0, 1}, {1, 1}}},
    };
    for (const auto& each : cases)
        EXPECT_EQ(paginate(each.lines, each.onFirst, each.onOthers), each.pages)
            << each.lines << " lines, " << each.onFirst << " on the first page";
}

/// What a program of poppler-utils says of the PDF.
std::string read(const std::string& pdf, std::vector<std::string> program) {
    const test::TempDir folder;
    writeFileAtomically(folder / "report.pdf", pdf);
    program.push_back(folder / "report.pdf");
    if (program.front() == "pdftotext")
        program.push_back("-");
    const auto result = runProcess({program});
    EXPECT_TRUE(result.succeeded()) << result.errors;
    return result.output;
}

RunReportDocument report(size_t lines) {
    RunReportDocument report{.identity = "00000000-0000-4000-8000-000000000001",
                             .title = "Copy & Clone",
                             .meta = "2026-11-23 00:30:05 · Ateneo",
                             .tint = Tone::warn,
                             .facts = {{"Source", "/media/a\xff\n/media/b"}},
                             .totals = {{"Size", "84.1 GB"}, {"Errors", "3", Tone::bad}},
                             .columns = {"Path", "Bytes"},
                             .numeric = {1},
                             .widths = {0.8, 0.2}};
    for (size_t i = 0; i < lines; ++i)
        report.lines.push_back({{fmt::format("/clips/clip {}.mov", i), "12 kB"}});
    return report;
}

TEST(ReportPdf, HoldsAllThatTheReportSays) {
    RunReportDocument long_ = report(100);
    const std::string path = "/start/" + std::string(300, 'x') + "/end.mov";
    long_.lines[7] = {{path, "9 GB"}, Tone::bad, "✕"};
    const std::string pdf = pdfOf(long_, Texts(Language::en), "es-ES");
    const std::string text = read(pdf, {"pdftotext", "-layout"});
    for (const char* each :
         {"Copy & Clone", "Ateneo", "84.1 GB", "/media/a\\xFF", "/media/b", "✕", "/start/", "/end.mov",
          "clip 0.mov", "clip 99.mov", "Page 1 of 3", "Page 3 of 3", "00000000-0000-4000-8000-000000000001"})
        EXPECT_THAT(text, HasSubstr(each));
    EXPECT_THAT(text, testing::Not(HasSubstr(path))) << "a path ran out of its column";
    size_t headers = 0;
    for (size_t at = text.find("Path"); at != std::string::npos; at = text.find("Path", at + 1))
        ++headers;
    EXPECT_EQ(headers, 3u) << "a page lacks the header of the table";
    EXPECT_THAT(read(pdf, {"pdfinfo"}), HasSubstr("(A4)"));
}

TEST(ReportPdf, FollowsLocaleAndLanguageAndNeedsNoLines) {
    const std::string pdf = pdfOf(report(0), Texts(Language::es), "en-US");
    EXPECT_THAT(read(pdf, {"pdfinfo"}), HasSubstr("(letter)"));
    EXPECT_THAT(read(pdf, {"pdftotext"}), HasSubstr("Página 1 de 1"));
}

} // namespace
} // namespace vh::reports
