#include "Features/Home/view/HomeViewModel.h"
#include "Features/Settings/view/SettingsViewModel.h"
#include "app/ModuleRegistry.h"
#include "app/ShellViewModel.h"

#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"
#include "app/DatabaseCare.h"
#include "app/PathText.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Shell, FindsToolsInEveryLanguageAndByFormerNames) {
    Desk desk;
    const ShellViewModel shell(desk.context);
    const struct {
        const char* text;
        const char* first;
    } cases[] = {
        {"cach", "system-junk"},
        {"  CACHÉ ", "system-junk"},
        {"duplicates", "disk-space"},
        {"lan-scanner", "net-diagnostics"},
        {"bandwidth", "net-diagnostics"},
        {"system junk", "system-junk"},
        {"batch ren", "batch-rename"},
        {"télécopieur inconnu", nullptr},
        {"", nullptr},
    };
    for (const auto& each : cases) {
        const auto found = column(shell.search(each.text), "id");
        if (each.first)
            EXPECT_THAT(found, testing::Contains(each.first)) << each.text;
        else
            EXPECT_THAT(found, IsEmpty()) << each.text;
    }
    EXPECT_EQ(column(shell.search("cache"), "id").front(), "system-junk")
        << "its name before other tools' summaries";
    EXPECT_TRUE(shell.search("c").front().toMap()["name"].toString().startsWith("C"))
        << "a name that is shown before one in another language";
    const auto hits = shell.search("disk");
    EXPECT_TRUE(std::ranges::is_partitioned(hits, [](const QVariant& hit) {
        return hit.toMap()["available"].toBool();
    })) << "a tool that is not there yet never stands before one that works";
    EXPECT_EQ(shell.idOf("Caché"), "system-junk");
    EXPECT_EQ(shell.idOf("lan-scanner"), "net-diagnostics");
    EXPECT_EQ(shell.idOf("no such tool"), "");
    for (const Language language : allLanguages)
        for (const ToolDescriptor& tool : ToolCatalog::all()) {
            const QString name = qtText(toolName(Texts(language), tool.id));
            EXPECT_THAT(column(shell.search(name), "id"), testing::Contains(tool.id)) << name.toStdString();
        }
}

TEST(Shell, ShowsTheSectionsOfAModeAndRemembersIt) {
    Desk desk;
    ShellViewModel shell(desk.context);
    EXPECT_EQ(shell.modeName(), "node");
    EXPECT_EQ(column(shell.sections(), "id").front(), "files");
    EXPECT_EQ(column(shell.sections()[0].toMap()["tools"].toList(), "id").front(), "fast-copy");
    const auto told = countOf(&shell, &ShellViewModel::sectionsChanged);
    shell.setMode("no such");
    EXPECT_EQ(*told, 0);
    shell.setMode("network");
    EXPECT_EQ(*told, 1);
    size_t shown = 0;
    for (const QVariant& section : shell.sections())
        for (const std::string& id : column(section.toMap()["tools"].toList(), "id")) {
            EXPECT_TRUE(desk.session.registry().hasEngine(id)) << id;
            ++shown;
        }
    for (const std::string& id : column(shell.absentTools(), "id")) {
        EXPECT_FALSE(desk.session.registry().hasEngine(id)) << id;
        ++shown;
    }
    EXPECT_EQ(shown, std::ranges::count_if(ToolCatalog::all(), [](const ToolDescriptor& tool) {
                  return std::ranges::count(vh::sections(AppMode::network), tool.section) > 0;
              }));
    EXPECT_EQ(ShellViewModel(desk.context).modeName(), "network");

    EXPECT_EQ(shell.tool("duplicates")["id"], "disk-space");
    EXPECT_EQ(shell.tool("system-junk")["hasEngine"], true);
    EXPECT_EQ(shell.tool("raid")["hasEngine"], false);
    EXPECT_THAT(shell.tool("no-such-tool"), IsEmpty());
    desk.context.texts().setSetting("fr");
    EXPECT_EQ(*told, 2);
    shell.setMode("node");
    EXPECT_EQ(column(shell.sections(), "title")[0], sectionTitle(Texts(Language::fr), ToolSection::files));
}

TEST(Home, GreetsByTheHour) {
    Desk desk;
    const std::pair<int, const char*> cases[] = {{0, "evening"},  {4, "evening"},    {5, "morning"},
                                                 {11, "morning"}, {12, "afternoon"}, {18, "afternoon"},
                                                 {19, "evening"}};
    for (const auto& [hour, greeting] : cases) {
        AppContext context(
            desk.session,
            [hour = hour] { return *parseIso8601("2026-11-22T00:59:00Z") + std::chrono::hours(hour); },
            LocalCalendar("UTC"));
        EXPECT_EQ(HomeViewModel(context).greeting().toLower().toStdString(), std::string("good ") + greeting)
            << hour;
    }
}

TEST(Home, TellsWhatRunsAndWhatWasDone) {
    Desk desk;
    desk.log().record(makeRun("lan-scanner", "12 devices", noon - std::chrono::days(3)));
    for (int i = 0; i < 6; ++i)
        desk.log().record(
            makeRun("system-junk", "clean " + std::to_string(i), noon - std::chrono::hours(6 - i)));
    HomeViewModel home(desk.context);
    const auto line = [&](const std::string& tool) {
        for (const QVariant& each : home.tools() + home.absentTools())
            if (each.toMap()["id"].toString().toStdString() == tool)
                return each.toMap()["line"].toString().toStdString();
        return std::string("no such tile");
    };
    EXPECT_THAT(home.recent(), IsEmpty()) << "nothing is read before the first frame";
    EXPECT_EQ(home.tools().size() + home.absentTools().size(),
              static_cast<qsizetype>(ToolCatalog::mainTools().size()));
    EXPECT_EQ(line("sync"), toolSummary(desk.context.texts().current(), "sync"));
    EXPECT_TRUE(home.isLoading());
    ASSERT_TRUE(waitFor([&] { return !home.isLoading(); }));
    EXPECT_FALSE(home.disks().isEmpty());
    EXPECT_THAT(column(home.recent(), "summary"),
                ElementsAre("clean 5", "clean 4", "clean 3", "clean 2", "clean 1"));
    EXPECT_EQ(column(home.recent(), "timeText")[0], "11:00");
    EXPECT_EQ(line("system-junk"), "11:00 · clean 5");
    EXPECT_EQ(line("net-diagnostics"), "19 Nov · 12 devices") << "a former tool's runs are those of its heir";
    for (const QVariant& disk : home.disks()) {
        const double fraction = disk.toMap()["fraction"].toDouble();
        EXPECT_TRUE(fraction >= 0 && fraction <= 1);
    }

    desk.log().record(makeRun("sync", "synced"));
    EXPECT_TRUE(waitFor([&] { return line("sync") == "12:00 · synced"; }));
    const auto told = countOf(&home, &HomeViewModel::runningChanged);
    const JobToken job = desk.context.activity().beginToken("Cache", "system-junk");
    EXPECT_EQ(*told, 1);
    EXPECT_THAT(column(home.running(), "progress"), ElementsAre("-1"));
    EXPECT_THAT(column(home.running(), "icon"), ElementsAre("trash"));
}

TEST(Settings, AreStoredAtOnceAndKept) {
    Desk desk;
    SettingsViewModel settings(desk.context);
    EXPECT_EQ(settings.language(), "system");
    EXPECT_EQ(settings.appearance(), "system");
    EXPECT_EQ(settings.version(), "1.2.3");
    EXPECT_THAT(column(settings.languageOptions(), "title"),
                ElementsAre("As the system", "English", "Español", "Français"));
    const auto told = countOf(&settings, &SettingsViewModel::languageChanged);
    settings.setLanguage("de");
    EXPECT_EQ(*told, 0);
    settings.setLanguage("es");
    EXPECT_EQ(*told, 1);
    EXPECT_EQ(column(settings.keepOptions(), "title").front(), "30 días");
    settings.setAppearance("dark");
    settings.setAppearance("pink");
    settings.setKeepRuns("days30");
    settings.setKeepRuns("for ever");
    settings.setKeepFiles("months6");

    Session next;
    AppContext context(next);
    const SettingsViewModel kept(context);
    EXPECT_EQ(next.texts().language(), Language::es);
    EXPECT_EQ(kept.language(), "es");
    EXPECT_EQ(kept.appearance(), "dark");
    EXPECT_EQ(kept.keepRuns(), "days30");
    EXPECT_EQ(kept.keepFiles(), "months6");
}

TEST(Settings, TellOfTheDatabaseAndMoveIt) {
    Desk desk;
    desk.log().record(makeRun("sync", "one", noon - std::chrono::days(1)));
    SettingsViewModel settings(desk.context);
    EXPECT_EQ(settings.databaseFolder(), "~/.local/share/Varnholt");
    settings.prune();
    const auto says = [&](const char* text) {
        return settings.usageText().startsWith(text);
    };
    EXPECT_TRUE(waitFor([&] { return says("1 run, 0 file lists, "); }));
    EXPECT_TRUE(settings.usageText().endsWith("The oldest run: Yesterday."));
    desk.log().record(makeRun("sync", "two", noon));
    EXPECT_TRUE(waitFor([&] { return says("2 runs, "); })) << "it follows what is done meanwhile";
    settings.moveDatabase("~/kept here");
    EXPECT_TRUE(waitFor([&] { return settings.databaseFolder() == "~/kept here"; }));
    settings.moveDatabase("somewhere");
    EXPECT_TRUE(settings.message().startsWith("somewhere"));
    makeFolders(desk.home / "taken");
    writeFileAtomically(desk.home / "taken/runs.jsonl", "another log\n");
    settings.moveDatabase("~/taken");
    EXPECT_TRUE(settings.message().contains("~/taken"));
    EXPECT_EQ(readFile(desk.home / "taken/runs.jsonl"), "another log\n");
    EXPECT_EQ(settings.databaseFolder(), "~/kept here");
}

TEST(PathText, IsForPeopleOnly) {
    EXPECT_EQ(displayPath("/home/anna/x\xff", "/home/anna"), "~/x\\xFF");
    EXPECT_EQ(displayPath("/home/annabel", "/home/anna"), "/home/annabel");
    EXPECT_EQ(displayPath("/home/anna", "/home/anna"), "~");
    EXPECT_EQ(displayName("/a/b: c\n"), "b: c\\x0A");
    EXPECT_EQ(chosenPath("file:///a%20b", "/h"), "/a b");
    EXPECT_EQ(chosenPath(" ~/é ", "/h"), "/h/é");
    EXPECT_EQ(chosenPath("a/b", "/h"), "");
    EXPECT_EQ(chosenPath("https://host/a", "/h"), "");
}

} // namespace
} // namespace vh::app::test
