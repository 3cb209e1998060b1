#include "Core/ActivityExport.h"
#include "Core/Csv.h"
#include "Core/RunReportDocument.h"

#include <gmock/gmock.h>

namespace vh {
namespace {

using testing::ElementsAre;

TEST(Csv, FieldsAreQuotedAndNeverRunAsFormulas) {
    const struct {
        std::string field;
        char separator;
        std::string expected;
    } cases[] = {
        {"plain", ',', "plain"},
        {"", ',', ""},
        {"a,b", ',', "\"a,b\""},
        {"a,b", ';', "a,b"},
        {"a;b", ';', "\"a;b\""},
        {"say \"hi\"", ',', "\"say \"\"hi\"\"\""},
        {"two\nlines", ',', "\"two\nlines\""},
        {"=1+1", ',', "'=1+1"},
        {"=A1,B1", ',', "\"'=A1,B1\""},
        {"@SUM(A1)", ',', "'@SUM(A1)"},
        {"\tx", ',', "'\tx"},
        {"\rx", ',', "\"'\rx\""},
        {"-12.5", ',', "-12.5"},
        {"-12,5", ';', "-12,5"},
        {"+1e-9", ',', "+1e-9"},
        {"-", ',', "'-"},
        {"-1-1", ',', "'-1-1"},
        {"+1e", ',', "'+1e"},
        {"+34 600", ',', "'+34 600"},
        {"-.", ',', "'-."},
        {"1=1", ',', "1=1"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(csvField(each.field, each.separator), each.expected) << each.field;
    EXPECT_EQ(csv({"a", "b"}, {{"1", "=x"}, {}}, ';'), "a;b\r\n1;'=x\r\n\r\n");
}

TEST(Csv, TheSeparatorFollowsTheLocalesDecimals) {
    for (const auto* locale : {"es", "es-ES", "fr", "de-DE"})
        EXPECT_EQ(csvSeparator(locale), ';') << locale;
    for (const auto* locale : {"en", "es-MX", "ja", "", "no such locale"})
        EXPECT_EQ(csvSeparator(locale), ',') << locale;
}

RunRecord sample() {
    return {.id = *Uuid::parse("00000000-0000-4000-8000-000000000001"),
            .toolID = "fast-copy",
            .startedAt = *parseIso8601("2026-11-22T23:30:05Z"),
            .duration = 12.34,
            .outcome = Outcome::failed,
            .summary = "=1+1",
            .metrics = {{"filesCopied", 2}, {"errors", 1}},
            .computer = "Ateneo",
            .details = std::map<std::string, std::string>{{"flow", "-12.5"}, {"bytes", "1500000"}}};
}

TEST(ActivityExport, OneRowARunInTheLocalesForm) {
    RunRecord bare{.toolID = "nodes-flow", .startedAt = *parseIso8601("2026-01-01T00:00:00Z")};
    const ActivityExport spanish{Texts(Language::es), "es-ES", LocalCalendar("Europe/Madrid")};
    EXPECT_EQ(spanish.csv({sample(), bare}),
              "Fecha;Herramienta;Equipo;Iniciado por;Resultado;Duración (s);Archivos;Bytes;Resumen;Flujo\r\n"
              "2026-11-23 00:30:05;Copiar y clonar;Ateneo;A mano;Fallido;12,3;2;1500000;'=1+1;-12.5\r\n"
              "2026-01-01 01:00:00;nodes-flow;;A mano;Hecho;0,0;;;;\r\n");
    EXPECT_EQ(detailColumns({sample(), bare}, {RunDetail::flow}), std::vector{RunDetail::bytes});
}

TEST(RunReportDocument, ShowsTheRunAndWhatItTouched) {
    const std::vector<RunFileRow> rows{{.path = "/a\n", .bytes = 1500000, .state = "copied"},
                                       {.path = "/b", .state = "failed"},
                                       {.path = "/c", .state = "unknown"}};
    const auto report =
        RunReportDocument::of(sample(), rows, Texts(Language::en), LocalCalendar("Europe/Madrid"));
    EXPECT_EQ(report.title, "Copy & Clone");
    EXPECT_EQ(report.meta, "2026-11-23 00:30:05 · Ateneo");
    EXPECT_EQ(report.tint, Tone::bad);
    std::map<std::string, std::string> facts;
    for (const auto& fact : report.facts)
        facts[fact.label] = fact.value;
    EXPECT_EQ(facts, (std::map<std::string, std::string>{{"Outcome", "Failed"},
                                                         {"Started by", "By hand"},
                                                         {"Duration", "12 s"},
                                                         {"Summary", "=1+1"},
                                                         {"Flow", "-12.5"}}));
    ASSERT_EQ(report.totals.size(), 3u);
    EXPECT_EQ(report.totals[1].value, "1.5 MB");
    EXPECT_EQ(report.totals[2].tone, Tone::bad);
    EXPECT_THAT(report.columns, ElementsAre("Path", "Bytes", "State"));
    EXPECT_THAT(report.numeric, ElementsAre(1u));
    EXPECT_NEAR(report.widths[0] + report.widths[1] + report.widths[2], 1, 1e-9);
    EXPECT_THAT(report.lines[1].cells, ElementsAre("/b", "", testing::Not("")));
    EXPECT_EQ(report.lines[0].marker, std::nullopt);
    EXPECT_EQ(report.lines[1].tone, Tone::bad);
    EXPECT_EQ(report.lines[2].tone, Tone::warn);
    EXPECT_EQ(report.lines[0].cells[0].find('\n'), std::string::npos) << "a name broke its line";
    EXPECT_EQ(report.pages(2), 2u);
    EXPECT_EQ(RunReportDocument::of(sample(), {}, Texts(Language::en), LocalCalendar("UTC")).pages(10), 1u);
}

} // namespace
} // namespace vh
