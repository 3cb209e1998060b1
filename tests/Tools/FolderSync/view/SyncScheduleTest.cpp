#include "Automation/Automation.h"
#include "Core/ScheduleStore.h"
#include "Features/Schedules/view/SchedulesViewModel.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "app/AutomationLife.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using Payload = std::map<std::string, std::string>;

TEST(SyncSchedule, TakesTwoFoldersOrAPairOfTheList) {
    Desk desk;
    AutomationLife life{desk.context};
    SchedulesViewModel model{desk.context, life};
    const auto saved = [&] {
        return life.automation().schedules().tasks().back().payload;
    };
    QVariantMap draft = model.draft({});
    draft.insert({{"action", "sync"}, {"source", "~/a"}, {"destination", "b"}, {"delete", true}});
    EXPECT_NE(model.save({}, draft), "") << "no folder is called so";
    draft.insert("destination", "/b");
    EXPECT_EQ(model.save({}, draft), "");
    EXPECT_EQ(saved(), (Payload{{"source", desk.home / "a"}, {"destination", "/b"}, {"delete", "true"}}));

    const sync::SyncPair pair{.id = Uuid::random(), .name = "Photos"};
    sync::SyncPairStore(sync::SyncPairStore::fileIn(desk.session.folders())).save({pair});
    EXPECT_THAT(column(model.payloadFields("sync")[0].toMap()["options"].toList(), "title"),
                testing::ElementsAre("Two folders of its own", "Photos"));
    draft.insert("pair", qtText(pair.id.text()));
    EXPECT_EQ(model.save({}, draft), "");
    EXPECT_EQ(saved(), (Payload{{"pair", pair.id.text()}})) << "the pair says the rest";
}

} // namespace
} // namespace vh::app::test
