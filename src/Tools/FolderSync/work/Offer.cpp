#include "Automation/Offer.h"
#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/work/SyncService.h"

namespace vh::features {

namespace {

using namespace automation;

RunRecord syncPair(ActionRun& run) {
    return syncPairOf(run, nullptr);
}

std::vector<FieldChoice> storedPairs(const Folders& folders, const Texts&) {
    std::vector<FieldChoice> choices;
    for (const sync::SyncPair& each : sync::SyncPairStore(sync::SyncPairStore::fileIn(folders)).load())
        choices.push_back({each.id.text(), printable(each.title())});
    return choices;
}

constexpr std::string_view noFolder = "schedules.fault.folder";
constexpr PayloadField fields[]{
    {.key = "pair",
     .kind = FieldKind::choice,
     .choices = storedPairs,
     .noneKey = "schedules.payload.own-folders"},
    {.key = "source", .kind = FieldKind::folder, .missingKey = noFolder, .unlessGiven = "pair"},
    {.key = "destination", .kind = FieldKind::folder, .missingKey = noFolder, .unlessGiven = "pair"},
    {.key = "delete", .kind = FieldKind::flag, .unlessGiven = "pair"}};
constexpr ActionRow actions[]{
    {.id = rawValue(ScheduledAction::folderSync), .run = syncPair, .fields = fields}};

} // namespace

extern const Offer FolderSync;
constinit const Offer FolderSync{.tool = "sync", .actions = actions, .service = [](Automation& automation) {
                                     automation.service<SyncService>();
                                 }};

} // namespace vh::features
