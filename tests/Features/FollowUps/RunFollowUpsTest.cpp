#include "Features/FollowUps/work/RunFollowUps.h"

#include "Automation/ScheduledActions.h"
#include "Mail/MailSender.h"
#include "Platform/Files.h"
#include "Platform/SecretStore.h"
#include "support/TestDependencies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace vh::automation::test {
namespace {

using Format = ReportFormat;

struct NoSecrets : SecretStore {
    std::optional<std::string> get(const std::string&) override { return std::nullopt; }
    void set(const std::string&, const std::string&, const std::string&) override {}
    void remove(const std::string&) override {}
};

class RunFollowUpsTest : public testing::Test {
protected:
    RunFollowUpsTest() {
        dependencies.log.setOnRecord([this](const RunRecord& record) { followUps.take(record); });
    }
    /// A run of the tool that removes one item, followed up.
    RunRecord clean() {
        dependencies.junk->add("/cache/a", 5'000'000);
        const ScheduledTask task{.toolID = "system-junk", .actionID = "system-junk"};
        const RunRecord record =
            ScheduledActions(dependencies.dependencies).run(task, Trigger::scheduled, {});
        followUps.finish();
        return record;
    }
    std::vector<std::string> reports() const {
        std::vector<std::string> files;
        if (statusOf(followUps.reportsFolder()))
            for (const auto& entry : std::filesystem::directory_iterator(followUps.reportsFolder()))
                files.push_back(entry.path());
        return files;
    }

    vh::test::TempDir dir;
    TestDependencies dependencies{dir.path()};
    NoSecrets secrets;
    mail::MailSender mail{dependencies.defaults, secrets, dependencies.log, dependencies.dependencies.texts};
    RunFollowUps followUps{dependencies.dependencies, mail};
};

TEST_F(RunFollowUpsTest, WithoutWishesNothingFollows) {
    clean();
    EXPECT_TRUE(reports().empty());
    EXPECT_EQ(dependencies.log.all().size(), 1u);
}

TEST_F(RunFollowUpsTest, KeepsAReportWithAllThatTheRunTouched) {
    followUps.setWishes("system-junk", {{}, Format::csv});
    const RunRecord record = clean();
    ASSERT_EQ(reports().size(), 1u);
    EXPECT_EQ(std::filesystem::path(reports().front()).filename(),
              "system-junk 2026-03-01 12.00.00 " + record.id.text().substr(0, 8) + ".csv");
    EXPECT_THAT(readFile(reports().front()), testing::HasSubstr("/cache/a"));
    // A run without a list is told in one line.
    dependencies.junk = std::make_shared<FakeModule>();
    dependencies.junk->scanError = "no disk";
    followUps.setWishes("system-junk", {{}, Format::pdf});
    clean();
    ASSERT_EQ(reports().size(), 2u);
    EXPECT_THAT(reports(), testing::Contains(testing::ResultOf(readFile, testing::StartsWith("%PDF"))));
}

TEST_F(RunFollowUpsTest, AMailThatCannotGoLeavesItsOwnRecordAndNoMore) {
    followUps.setWishes("system-junk", {{"ana@example.org"}, {}});
    followUps.setWishes("send-email", {{"ana@example.org"}, {}});
    clean();
    followUps.finish();
    const auto all = dependencies.log.all();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all.back().toolID, "send-email");
    EXPECT_EQ(all.back().outcome, Outcome::failed);
    EXPECT_EQ(all.back().trigger, Trigger::scheduled);
}

TEST_F(RunFollowUpsTest, RemembersWishesAndAddresses) {
    int told = 0;
    const auto token = followUps.observe([&] { ++told; });
    const FollowUpWishes both{{"ana@example.org", "bo@example.org"}, Format::pdf};
    followUps.setWishes("sync", both);
    EXPECT_EQ(RunFollowUps(dependencies.dependencies, mail).wishes("sync"), both);
    followUps.setWishes("sync", {});
    EXPECT_TRUE(followUps.wishes("sync").isEmpty());
    EXPECT_EQ(followUps.knownAddresses(), (std::vector<std::string>{"ana@example.org", "bo@example.org"}));
    EXPECT_EQ(told, 2);
    EXPECT_EQ(followUps.revision(), 2);
}

} // namespace
} // namespace vh::automation::test
