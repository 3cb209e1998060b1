#include "Features/Flows/work/FlowTriggers.h"

#include "Automation/ScheduledActions.h"
#include "Automation/ScriptLibrary.h"
#include "Core/Secrets.h"
#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/NodesExecutor.h"
#include "Mail/MailSender.h"
#include "Platform/Desktop.h"
#include "Platform/Files.h"
#include "support/BusService.h"
#include "support/PrivateBus.h"
#include "support/SmallDisk.h"
#include "support/TestDependencies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vh::automation::test {
namespace {

using namespace flows;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class LazyDesktop : public Desktop {
public:
    void notify(const std::string&, const std::string&) override {}
    std::optional<std::chrono::milliseconds> idleTime() override { return idle; }
    std::optional<bool> isOnMains() override { return std::nullopt; }
    MainLoop::Token watchPower(MainLoop&, std::function<void()>) override { return {}; }
    std::optional<std::chrono::milliseconds> idle;
};

/// Triggers over a real store and runner, with the desktop and the volumes in the test's hands.
class FlowTriggersTest : public testing::Test {
public:
    FlowTriggersTest() {
        runner_.setOnFinished([this](const Flow& flow, FlowNodeOutcome outcome, const auto& chain) {
            triggers_.finished(flow, outcome, chain);
        });
    }

    Flow flow(const std::string& name, const FlowTrigger& start) {
        Flow flow = Flow::blank(name, dependencies_.dependencies.clock());
        flow.nodes[0].kind = StartNode{start};
        return store_.save(flow);
    }
    size_t count(const Flow& flow) { return store_.runs(flow.id).size(); }
    bool waitForRuns(const Flow& flow, size_t number) {
        return dependencies_.loop.waitUntil(
            flow.name, [&] { return count(flow) == number && !runner_.isRunning(flow.id); });
    }
    /// Events of all runs, oldest first.
    std::vector<std::string> events(const Flow& flow) {
        std::vector<std::string> events;
        for (const FlowRun& run : store_.runs(flow.id))
            events.insert(events.begin(), run.event.value_or(""));
        return events;
    }

    vh::test::TempDir folder_;
    TestDependencies dependencies_{folder_.path()};
    LazyDesktop desktop_;
    std::vector<VolumeFacts> volumes_;
    ScheduleStore schedules_{folder_ / "schedules.json", LocalCalendar("UTC")};
    NodesStore store_{folder_ / "flows", schedules_, dependencies_.loop.clock(), LocalCalendar("UTC")};
    ScriptLibrary scripts_{folder_ / "scripts"};
    std::unique_ptr<SecretStore> secrets_ = openSecretStore(folder_ / "secrets.json");
    mail::MailSender mail_{dependencies_.defaults, *secrets_, dependencies_.log,
                           dependencies_.dependencies.texts};
    ScheduledActions actions_{dependencies_.dependencies};
    FlowOutpost outpost_;
    NodesExecutor executor_{dependencies_.dependencies, actions_, scripts_, mail_, desktop_, outpost_};
    NodesRunner runner_{dependencies_.dependencies, store_, executor_, mail_};
    FlowTriggers triggers_{dependencies_.dependencies, store_, runner_, desktop_, [this] {
                               return volumes_;
                           }};
};

TEST_F(FlowTriggersTest, AStretchOfIdlenessStartsAFlowOnce) {
    const Flow ten = flow("Ten", OnIdle{10});
    const Flow hour = flow("Hour", OnIdle{60});
    triggers_.start();
    size_t runs = 0;
    for (const auto& [idle, isNews] :
         std::vector<std::pair<std::optional<minutes>, bool>>{{minutes(9), false},
                                                              {minutes(10), true},
                                                              {minutes(11), false},
                                                              {std::nullopt, false},
                                                              {minutes(12), false},
                                                              {minutes(0), false},
                                                              {minutes(15), true}}) {
        desktop_.idle = idle;
        dependencies_.loop.advance(seconds(30));
        runs += isNews ? 1 : 0;
        ASSERT_TRUE(waitForRuns(ten, runs));
    }
    EXPECT_EQ(count(hour), 0U);
}

TEST_F(FlowTriggersTest, TheDesktopsIdleTimeStartsAFlow) {
    const vh::test::PrivateBus session(vh::test::PrivateBus::Kind::session);
    vh::test::BusService monitor(session.address(), "org.gnome.Mutter.IdleMonitor",
                                 "/org/gnome/Mutter/IdleMonitor/Core");
    const Flow ten = flow("Ten", OnIdle{10});
    const auto desktop = openDesktop();
    FlowTriggers triggers(dependencies_.dependencies, store_, runner_, *desktop,
                          [] { return std::vector<VolumeFacts>(); });
    triggers.start();
    size_t runs = 0;
    for (const uint64_t idle : {599'000u, 600'000u, 0u, 600'000u}) {
        monitor.setReply("org.gnome.Mutter.IdleMonitor.GetIdletime", idle);
        dependencies_.loop.advance(seconds(30));
        runs += idle == 600'000u ? 1 : 0;
        ASSERT_TRUE(waitForRuns(ten, runs)) << idle;
    }
}

TEST_F(FlowTriggersTest, AChainThatComesBackStops) {
    Flow first = flow("First", OnDemand{});
    const Flow second = flow("Second", OnFlowFinished{{first.id, "First", FlowFinish::any}});
    first.nodes[0].kind = StartNode{OnFlowFinished{{second.id, "Second", FlowFinish::any}}};
    store_.save(first);
    const Flow last = flow("Last", OnFlowFinished{{second.id, "Second", FlowFinish::any}});
    triggers_.start();
    ASSERT_TRUE(runner_.start(*store_.flow(first.id), {}));
    ASSERT_TRUE(waitForRuns(last, 1));
    ASSERT_TRUE(waitForRuns(second, 1));
    ASSERT_TRUE(waitForRuns(first, 1));
    EXPECT_THAT(events(last), ElementsAre("Second ended"));
}

TEST_F(FlowTriggersTest, VolumesThatChangeInOneLook) {
    const auto volume = [](const char* path, const char* name, const char* uuid) {
        return VolumeFacts{.path = path, .name = name, .uuid = uuid};
    };
    const auto any = [](const char* beginning) {
        return FlowDiskMatch{FlowDiskMatch::Rule::prefix, beginning, "", FlowDiskMatch::Scope::any};
    };
    const Flow came = flow("Came", OnDiskMounted{any("card")});
    const Flow went = flow("Went", OnDiskUnmounted{any("card")});
    const Flow other = flow("Other", OnDiskMounted{any("film")});
    volumes_ = {volume("/media/a", "Card 1", "1"), volume("/media/b", "Card 2", "2")};
    triggers_.start();
    // The second keeps its place, but is another one by now; the third is new.
    volumes_ = {volume("/media/a", "Card 1", "1"), volume("/media/b", "Film", "3"),
                volume("/media/c", "Card 4", "4")};
    const vh::test::TmpfsMount news(4096);
    ASSERT_TRUE(news);
    ASSERT_TRUE(waitForRuns(came, 1));
    ASSERT_TRUE(waitForRuns(went, 1));
    ASSERT_TRUE(waitForRuns(other, 1));
    EXPECT_THAT(events(came), ElementsAre("Card 4 was connected"));
    EXPECT_THAT(events(went), ElementsAre("Card 2 was removed"));
}

TEST_F(FlowTriggersTest, FilesThatArriveDuringARunWaitForItsEnd) {
    const std::string in = folder_ / "in";
    makeFolders(in);
    const Flow files = flow("Files", OnNewFiles{in, {}, 1});
    triggers_.start();
    const auto arrive = [&](const char* name) {
        writeFileAtomically(in + "/" + name, "x");
        dependencies_.loop.pump();
        dependencies_.loop.advance(seconds(5));
    };
    {
        const FileLock runsElsewhere = store_.lockForRun(files.id);
        arrive("one");
        arrive("two");
        EXPECT_EQ(count(files), 0U);
    }
    dependencies_.loop.advance(seconds(5));
    ASSERT_TRUE(waitForRuns(files, 1));
    EXPECT_THAT(store_.runs(files.id)
                    .front()
                    .values.value_or(FlowValues{})
                    .files.value_or(std::vector<std::string>{}),
                UnorderedElementsAre(in + "/one", in + "/two"));
    // A flow that is gone takes its watch with it.
    store_.remove(files.id);
    arrive("three");
    EXPECT_EQ(dependencies_.log.all().size(), 1U);
}

TEST(FlowLink, NamesAFlow) {
    const Uuid id = Uuid::random();
    const std::string link = "varnholt://flow/run?id=" + id.text();
    for (const std::string& good : {link, "VARNHOLT://flow/run?id=" + id.text(), link + "&x=1",
                                    link + "#there", "varnholt://flow/run?x=1&id=" + id.text()})
        EXPECT_EQ(flowOfLink(good), id) << good;
    for (const std::string& bad :
         {std::string(), std::string("varnholt://flow/run?id="), link + "0", " " + link,
          "varnholt://flow/stop?id=" + id.text(), "https://flow/run?id=" + id.text(),
          "varnholt://flow/run?xid=" + id.text()})
        EXPECT_EQ(flowOfLink(bad), std::nullopt) << bad;
}

} // namespace
} // namespace vh::automation::test
