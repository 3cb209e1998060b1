#include "app/DatabaseCare.h"

#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using std::chrono::days;
using testing::ElementsAre;

struct Care : testing::Test {
    Desk desk;
    DatabaseCare& care = desk.context.databaseCare();
    std::shared_ptr<int> changes = countOf(&care, &DatabaseCare::changed);

    void addRuns() {
        for (const int age : {400, 100, 40, 1}) {
            const RunRecord run = makeRun("sync", std::to_string(age), noon - days(age));
            desk.log().record(run);
            desk.session.runFiles().save(run.id, {{.path = "/x", .state = "trashed"}});
        }
    }
    std::vector<std::string> kept() {
        std::vector<std::string> texts;
        for (const RunRecord& run : desk.log().all())
            texts.push_back(run.summary);
        return texts;
    }
    void waitForChange() {
        ASSERT_TRUE(waitFor([&, before = *changes] { return *changes > before; }));
    }
};

TEST_F(Care, KeepsWhatThePersonWantsKept) {
    addRuns();
    EXPECT_EQ(care.keepRuns(), Keep::always);
    care.start();
    waitForChange();
    ASSERT_TRUE(care.usage());
    EXPECT_EQ(care.usage()->runs, 4);
    EXPECT_EQ(care.usage()->lists, 4);
    EXPECT_EQ(care.usage()->oldest, noon - days(400));
    EXPECT_GT(care.usage()->bytes, desk.log().bytes());

    care.setKeepRuns(Keep::days90);
    care.prune();
    waitForChange();
    EXPECT_THAT(kept(), ElementsAre("40", "1"));
    EXPECT_EQ(care.usage()->runs, 2);
    EXPECT_EQ(care.usage()->lists, 2) << "a list goes with its run";
    EXPECT_EQ(DatabaseCare(desk.session.defaults(), desk.log(), desk.session.runFiles()).keepRuns(),
              Keep::days90);
}

TEST_F(Care, MovesTheDatabaseOrSaysWhyNot) {
    addRuns();
    const std::string target = desk.home / "elsewhere";
    care.move(target);
    ASSERT_TRUE(waitFor([&] { return !care.isMoving(); }));
    EXPECT_EQ(care.moveFailure(), "");
    EXPECT_EQ(care.folder(), target);
    EXPECT_EQ(desk.log().location(), target + "/runs.jsonl");
    EXPECT_EQ(kept().size(), 4u);

    junk::test::write(desk.home / "file", "no folder");
    care.move(desk.home / "file/inside");
    ASSERT_TRUE(waitFor([&] { return !care.isMoving(); }));
    EXPECT_THAT(care.moveFailure().toStdString(), testing::HasSubstr("file"));
    EXPECT_EQ(care.folder(), target);
    EXPECT_EQ(kept().size(), 4u);
}

} // namespace
} // namespace vh::app::test
