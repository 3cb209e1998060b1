#include "Tools/FolderSync/view/FolderSyncViewModel.h"

#include "Automation/Automation.h"
#include "Platform/Files.h"
#include "Platform/LoginItem.h"
#include "Tools/FolderSync/work/SyncRunner.h"
#include "Tools/FolderSync/work/SyncService.h"
#include "app/AutomationLife.h"
#include "support/view/Desk.h"

#include <filesystem>

namespace vh::app::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct FolderSync : testing::Test {
    Desk desk;
    AutomationLife life{desk.context};
    FolderSyncViewModel model{desk.context, life.automation().service<automation::SyncService>().runner()};
    QStringList said;

    FolderSync() {
        for (const char* folder : {"Photos", "Backup"})
            makeFolders(at(folder));
        QObject::connect(&model, &FolderSyncViewModel::said, &model,
                         [this](const QString& text) { said << text; });
    }
    std::string at(std::string_view name) { return desk.home / std::string(name); }
    void put(std::string_view name, std::string_view text = "text") {
        makeFolders(std::filesystem::path(at(name)).parent_path().string());
        writeFileAtomically(at(name), text);
    }
    QString save(const QVariantMap& more = {}, const QString& id = {}) {
        QVariantMap draft = model.draft(id);
        if (id.isEmpty())
            draft.insert({{"source", "~/Photos"}, {"destination", "~/Backup"}});
        draft.insert(more);
        return model.save(id, draft);
    }
    QString id() { return model.selected()["pairId"].toString(); }
    bool compare() {
        model.compare();
        return waitFor([this] { return model.phaseName() != "planning"; });
    }
    bool sync() {
        model.sync();
        return waitFor([this] { return model.phaseName() == "finished" || !model.confirmTrash().isEmpty(); });
    }
    std::vector<std::string> paths() { return column(model.plan(), "path"); }
};

TEST_F(FolderSync, KeepsPairsByTheForm) {
    const std::pair<QVariantMap, bool> drafts[] = {
        {{{"source", ""}}, false},
        {{{"destination", "Backup"}}, false},
        {{{"destination", "~/Photos/"}}, false},
        {{{"destination", "~/Photos/of/me"}}, false},
        {{{"source", "/"}}, false},
        {{{"destination", "~/Photos 2"}}, true},
        {{{"name", " Mine "}, {"watch", true}, {"deleteExtraneous", true}, {"compareContents", true}}, true},
    };
    for (const auto& [draft, isGood] : drafts) {
        const int before = model.pairCount();
        EXPECT_EQ(save(draft).isEmpty(), isGood) << draft.firstKey().toStdString();
        EXPECT_EQ(model.pairCount(), before + isGood);
    }
    EXPECT_THAT(column(model.pairs(), "title"), ElementsAre("Photos → Photos 2", "Mine"));
    EXPECT_EQ(model.selected()["title"], "Mine") << "the one that was made is chosen";
    EXPECT_EQ(model.draft(id())["source"], "~/Photos");
    EXPECT_TRUE(model.draft(id())["compareContents"].toBool());

    // A name that cannot be shown is kept when the form leaves it as it is.
    auto pair = life.automation().service<automation::SyncService>().runner().pairs().front();
    pair.source = at("caf\xE9");
    life.automation().service<automation::SyncService>().runner().put(pair);
    const QString odd = qtText(pair.id.text());
    EXPECT_EQ(save({{"name", "Odd"}}, odd), "");
    EXPECT_EQ(life.automation().service<automation::SyncService>().runner().pairs().front().source,
              at("caf\xE9"));
    model.remove(odd);
    EXPECT_NE(save({{"name", "Gone"}}, odd), "") << "removed meanwhile";
    EXPECT_THAT(column(model.pairs(), "title"), ElementsAre("Mine"));
    EXPECT_TRUE(std::filesystem::exists(at("Photos"))) << "the folders stay";
}

TEST_F(FolderSync, ShowsAPlanByKindAndByText) {
    ASSERT_EQ(save({{"deleteExtraneous", true}}), "");
    put("Photos/Rome/Éa.jpg", "12345");
    put("Photos/b.jpg", "new");
    put("Backup/b.jpg", "older");
    put("Backup/gone.jpg");
    ASSERT_TRUE(compare());
    EXPECT_THAT(paths(), ElementsAre("Rome", "Rome/Éa.jpg", "b.jpg", "gone.jpg"));
    EXPECT_EQ(model.planText(), "2 items to copy, 8 bytes · 1 to the Trash · 1 new folder");
    EXPECT_THAT(column(model.kinds(), "countText"), ElementsAre("1", "1", "1", "1"));
    model.orderBy("size");
    EXPECT_EQ(paths().front(), "Rome/Éa.jpg") << "the largest";
    model.orderBy("size");
    EXPECT_EQ(paths().back(), "Rome/Éa.jpg");
    model.orderBy("size");
    EXPECT_THAT(paths(), ElementsAre("Rome", "Rome/Éa.jpg", "b.jpg", "gone.jpg")) << "as planned";
    model.setKindName("delete");
    EXPECT_THAT(paths(), ElementsAre("gone.jpg"));
    model.setKindName("");
    model.setSearch("eA");
    EXPECT_THAT(paths(), ElementsAre("Rome/Éa.jpg"));
    EXPECT_FALSE(std::filesystem::exists(at("Backup/Rome"))) << "comparing changes nothing";
    const QString first = id();
    ASSERT_EQ(save({{"destination", "~/Elsewhere"}}), "");
    EXPECT_FALSE(model.hasPlan()) << "it belongs to the other pair";
    model.select(first);
    EXPECT_TRUE(model.hasPlan());
    ASSERT_EQ(save({{"compareContents", true}}, first), "");
    EXPECT_FALSE(model.hasPlan()) << "the rules have changed";
}

TEST_F(FolderSync, SyncsAtOnceButAsksBeforeAnythingLeaves) {
    ASSERT_EQ(save({{"deleteExtraneous", true}}), "");
    put("Photos/a.jpg");
    ASSERT_TRUE(sync());
    EXPECT_EQ(model.result()["outcome"], "success");
    EXPECT_EQ(readFile(at("Backup/a.jpg")), "text");
    EXPECT_THAT(said.join('|').toStdString(), HasSubstr("1 new"));
    model.sync();
    ASSERT_TRUE(waitFor([&] { return said.size() == 2; }));
    EXPECT_TRUE(said.back().startsWith("Up to date.")) << said.back().toStdString();

    put("Backup/gone.jpg");
    ASSERT_TRUE(compare());
    ASSERT_TRUE(sync());
    EXPECT_EQ(model.confirmTrash()["count"], 1);
    model.decline();
    settle();
    EXPECT_TRUE(std::filesystem::exists(at("Backup/gone.jpg")));
    model.sync();
    ASSERT_FALSE(model.confirmTrash().isEmpty()) << "the plan that is shown is the one that is asked about";
    model.approve();
    EXPECT_EQ(model.phaseName(), "running");
    ASSERT_TRUE(waitFor([&] { return model.phaseName() == "finished"; }));
    EXPECT_FALSE(std::filesystem::exists(at("Backup/gone.jpg")));
    EXPECT_THAT(model.selected()["stateText"].toString().toStdString(), HasSubstr("Last synced"));
    EXPECT_FALSE(model.hasPlan());
}

TEST_F(FolderSync, TellsWhatWentWrong) {
    ASSERT_EQ(save(), "");
    put("Photos/album/a.jpg");
    put("Backup/album"); // where a folder has to be
    ASSERT_TRUE(sync());
    EXPECT_EQ(model.result()["outcome"], "warning");
    EXPECT_THAT(model.errors().join('|').toStdString(), HasSubstr("album/a.jpg"));
    EXPECT_EQ(model.selected()["stateText"], "1 problem");
    std::filesystem::remove_all(at("Photos"));
    ASSERT_TRUE(compare());
    EXPECT_EQ(model.errorMessage(), "The folder ~/Photos is not there.");
    std::filesystem::create_directory_symlink(at("Backup"), at("Photos"));
    ASSERT_TRUE(compare());
    EXPECT_EQ(model.errorMessage(), "Source and destination must not contain each other.");
    EXPECT_FALSE(model.hasPlan());
    model.compare();
    model.stop();
    EXPECT_EQ(model.phaseName(), "idle") << "stopped at once, whatever the disk does";
    settle();
    EXPECT_EQ(model.errorMessage(), "");
}

TEST_F(FolderSync, SaysHowAWatchedPairIsAndWhatItNeeds) {
    using sync::WatchState;
    const sync::SyncPair pair{
        .id = Uuid::random(), .source = at("Photos"), .destination = "/b", .watch = true};
    const std::tuple<WatchState, const char*, const char*, const char*> cases[] = {
        {{WatchState::Kind::watching, {}, 0}, "success", "", ""},
        {WatchState::held(24), "warning", "plan", "24 items would go to the Trash"},
        {WatchState::failed("No room"), "failed", "compare", "No room"},
        {WatchState::notPermitted(at("Photos")), "failed", "", "~/Photos"},
        {{WatchState::Kind::waitingForSource, {}, 0}, "warning", "edit", "~/Photos"},
        {{WatchState::Kind::waitingForDestination, {}, 0}, "warning", "edit", "/b cannot be found"},
    };
    for (const auto& [state, outcome, act, text] : cases) {
        const auto row = FolderSyncRow::of(pair, {.watch = &state, .isWatchedByAny = true}, desk.context);
        EXPECT_EQ(row.outcome, outcome);
        EXPECT_EQ(row.needAct, act);
        EXPECT_THAT((row.needTitle + row.needText).toStdString(), HasSubstr(text));
    }
    EXPECT_EQ(FolderSyncRow::of(pair, {}, desk.context).stateText, "Not watched now");
}

TEST_F(FolderSync, FollowsAWatchAndApprovesWhatItHeldBack) {
    life.start();
    ASSERT_EQ(save({{"deleteExtraneous", true}, {"watch", true}}), "");
    for (int i = 0; i < 24; ++i)
        put("Backup/" + std::to_string(i));
    put("Photos/a.jpg");
    ASSERT_TRUE(waitFor([&] { return model.selected()["needAct"] == "plan"; }));
    EXPECT_EQ(model.countText(), "1 pair, 1 needs attention");
    EXPECT_FALSE(std::filesystem::exists(at("Backup/a.jpg")));
    ASSERT_TRUE(compare());
    ASSERT_TRUE(sync());
    model.approve();
    ASSERT_TRUE(waitFor([&] { return model.selected()["stateText"] == "Watching"; }));
    EXPECT_TRUE(std::filesystem::exists(at("Backup/a.jpg")));
    EXPECT_TRUE(waitFor([&] { return !model.selected()["isRunning"].toBool(); }));
}

TEST_F(FolderSync, OpensAtLoginByAnEntryOfItsOwn) {
    EXPECT_FALSE(model.opensAtLogin());
    model.enableOpenAtLogin(true);
    EXPECT_TRUE(model.opensAtLogin());
    const Folders& folders = desk.session.folders();
    const std::string entry = folders.config + "/autostart/com.varnholt.app.desktop";
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    EXPECT_THAT(readFile(entry), HasSubstr("Exec=\"" + program + "\"\n"));
    writeFileAtomically(entry, readFile(entry) + "Hidden=true\n");
    EXPECT_FALSE(opensAtLogin(folders)) << "switched off in the settings of the desktop";
    model.enableOpenAtLogin(true);
    EXPECT_TRUE(model.opensAtLogin());
    model.enableOpenAtLogin(false);
    EXPECT_FALSE(std::filesystem::exists(entry));
    EXPECT_THAT(said, IsEmpty());
}

} // namespace
} // namespace vh::app::test
