#include "HelperKit/HelperClient.h"

#include "Core/Codec.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "HelperKit/OnceBox.h"
#include "support/FakeRootService.h"
#include "support/TempDir.h"

#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace vh::helper {

namespace {

using namespace std::chrono_literals;
using test::FakeRootService;
using Kind = HelperClientError::Kind;
using Status = HelperRegistrationStatus;
using Ends = ServiceLink::Ends;
using Step = FakeRootService::Step;

constexpr std::string_view buildKey = "helper.registeredBuild";

/// A client of build "2", which that build registered.
struct Side {
    test::TempDir folder;
    UserDefaults defaults{folder / "defaults.json"};
    FakeRootService service;
    std::shared_ptr<test::FakeRegistration> registration = std::make_shared<test::FakeRegistration>();
    std::chrono::milliseconds limit = 20ms, asked = 0ms;
    HelperClient client{{.openLink = [this] { return service.open(); },
                         .registration = registration,
                         .defaults = defaults,
                         .build = "2",
                         .repairPause = 0ms,
                         .limit =
                             [this](auto deadline) {
                                 asked = deadline;
                                 return limit;
                             }}};

    Side() { defaults.set(buildKey, "2"); }
};

template <class Call>
std::optional<Kind> failureOf(Call call) {
    try {
        call();
    } catch (const HelperClientError& error) {
        return error.kind;
    }
    return std::nullopt;
}

Step values(ServiceValues given) {
    return FakeRootService::reply(std::move(given));
}

const Step silence = [](const Ends&) {
};
const Step loss = FakeRootService::lose();
const Step done = values({true, std::string("flushed")});
const Step pong = values({std::string("here")});

} // namespace

TEST(OnceBox, TheFirstOfManyEndsWinsAndALateOneIsDropped) {
    for (int round = 0; round < 100; ++round) {
        OnceBox<int> box;
        std::atomic<int> winners = 0;
        std::vector<std::thread> ends;
        for (int i = 0; i < 4; ++i)
            ends.emplace_back([&, i] { winners += box.end(i) ? 1 : 0; });
        const auto end = box.wait(10s);
        for (std::thread& each : ends)
            each.join();
        ASSERT_TRUE(end);
        ASSERT_EQ(winners, 1);
    }
    OnceBox<int> box;
    EXPECT_FALSE(box.wait(1ms));
    EXPECT_FALSE(box.end(1));
}

TEST(HelperClient, NothingIsCalledWhileTheHelperIsNotEnabled) {
    Side side;
    side.service.on("RunMaintenanceTask", done);
    for (const Status status :
         {Status::notRegistered, Status::requiresApproval, Status::notFound, Status::unknown}) {
        side.registration->now = status;
        try {
            side.client.runMaintenanceTask(MaintenanceTask::flushDNS);
            FAIL();
        } catch (const HelperClientError& error) {
            EXPECT_EQ(error.kind, Kind::unavailable);
            EXPECT_EQ(error.status, status);
        }
    }
    EXPECT_EQ(side.service.opened(), 0);
    side.registration->now = Status::enabled; // by another process
    EXPECT_TRUE(side.client.runMaintenanceTask(MaintenanceTask::flushDNS).succeeded);
}

TEST(HelperClient, ACallThatFailsIsRepairedWithoutAskingAndRepeatedOnce) {
    struct Case {
        const char* what;
        std::vector<Step> answers;
        Step ping;
        bool asks;
        std::optional<Kind> failure;
        int calls, pings, added;
    };
    const Step refusal = FakeRootService::reply(ServiceRefusal{"unknownTask", "no"});
    const Case cases[] = {
        {"well", {done}, pong, false, {}, 1, 0, 0},
        {"silent once", {silence, done}, pong, false, {}, 2, 1, 0},
        {"lost once", {loss, done}, pong, false, {}, 2, 1, 0},
        {"silent for ever", {silence}, pong, false, Kind::restarted, 2, 1, 0},
        {"lost for ever", {loss}, loss, false, Kind::restarted, 2, 1, 1},
        {"registering helps", {loss, done}, silence, false, {}, 2, 1, 1},
        {"nobody is asked", {loss}, loss, true, Kind::restarted, 2, 1, 0},
        {"refused", {refusal}, pong, false, Kind::refused, 1, 0, 0},
        {"refused after the repair", {loss, refusal}, pong, false, Kind::refused, 2, 1, 0},
        {"garbage", {pong}, pong, false, Kind::badStatus, 1, 0, 0},
        {"no, without a word", {values({false, std::string(" ")})}, pong, false, Kind::taskFailed, 1, 0, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        Side side;
        side.registration->asks = each.asks;
        for (const Step& answer : each.answers)
            side.service.on("RunMaintenanceTask", answer);
        side.service.on("Ping", each.ping);
        EXPECT_EQ(failureOf([&] { side.client.runMaintenanceTask(MaintenanceTask::flushDNS); }),
                  each.failure);
        EXPECT_EQ(side.service.calls("RunMaintenanceTask"), each.calls);
        EXPECT_EQ(side.service.calls("Ping"), each.pings);
        EXPECT_EQ(side.registration->added, each.added);
        EXPECT_EQ(side.registration->removed, each.added);
    }
}

TEST(HelperClient, ACancelledCallIsLeftToTheHelperAtOnceAndNotMadeAgain) {
    enum class When { silent, lost, repairing };
    for (const When when : {When::silent, When::lost, When::repairing}) {
        Side side;
        side.limit = 1h;
        const CancelToken cancel;
        side.service
            .on("RunMaintenanceTask",
                [&](const Ends& ends) {
                    if (when != When::repairing)
                        cancel.cancel();
                    if (when != When::silent)
                        ends.lost("killed");
                })
            .on("Ping", [&](const Ends&) { cancel.cancel(); });
        EXPECT_THROW(side.client.runMaintenanceTask(MaintenanceTask::flushDNS, cancel), LeftToHelper);
        EXPECT_EQ(side.service.calls("RunMaintenanceTask"), 1);
        EXPECT_EQ(side.service.links(), 0) << "it closes, so that nobody is asked any longer";
    }
}

TEST(HelperClient, TheTimeForAPasswordComesOnTopOfThatForTheWork) {
    Side side;
    side.limit = 10s;
    side.service.on("Ping", pong).on("RunMaintenanceTask", done);
    side.client.ping();
    EXPECT_EQ(side.asked, 10s);
    side.client.runMaintenanceTask(MaintenanceTask::flushDNS);
    EXPECT_EQ(side.asked, 180s + 2min);
    side.client.runMaintenanceTask(MaintenanceTask::downloadUpdates);
    EXPECT_EQ(side.asked, 3600s + 2min);
}

TEST(HelperClient, APingIsNeverRepeatedAndAnswersNothingWhenItFails) {
    Side side;
    side.service.on("Ping", pong).on("Ping", silence).on("Ping", loss);
    EXPECT_EQ(side.client.ping(), "here");
    EXPECT_EQ(side.client.lastPing(), "here");
    EXPECT_EQ(side.client.ping(), "");
    EXPECT_EQ(side.client.lastPing(), "");
    EXPECT_EQ(failureOf([&] { side.client.pingOrThrow(); }), Kind::connectionFailed);
    EXPECT_EQ(side.service.calls("Ping"), 3);
    EXPECT_EQ(side.registration->added, 0);
}

TEST(HelperClient, AReplyThatComesAfterItsDeadlineIsTakenForNoOtherCall) {
    Side side;
    Ends late;
    side.service.on("RunMaintenanceTask", [&](const Ends& ends) { late = ends; })
        .on("RunMaintenanceTask", [&](const Ends& ends) {
            late.reply(ServiceValues{true, std::string("of the first")});
            late.lost("and gone");
            ends.reply(ServiceValues{true, std::string("of the second")});
            ends.reply(ServiceValues{false, std::string("again")});
        });
    side.service.on("Ping", pong);
    EXPECT_EQ(side.client.runMaintenanceTask(MaintenanceTask::flushDNS).output, "of the second");
}

TEST(HelperClient, OneRepairServesAllCallsThatFailedTogetherAndEndsNoOther) {
    Side side;
    side.limit = 10s;
    std::mutex mutex;
    std::vector<Ends> failing;
    Ends slow;
    const Step collect = [&](const Ends& ends) {
        const std::lock_guard lock(mutex);
        failing.push_back(ends);
        if (failing.size() == 4) // the last to come ends them all
            for (const Ends& each : failing)
                each.lost("killed");
    };
    for (int i = 0; i < 4; ++i)
        side.service.on("RunMaintenanceTask", collect);
    side.service.on("RunMaintenanceTask", done).on("Ping", pong);
    std::promise<void> started;
    side.service.on("SizeOfAllowedDirectory", [&](const Ends& ends) {
        slow = ends;
        started.set_value();
    });

    auto size = std::async(std::launch::async, [&] { return side.client.sizeOfAllowedDirectory("/x"); });
    started.get_future().wait();
    std::vector<std::future<bool>> tasks;
    for (int i = 0; i < 4; ++i)
        tasks.push_back(std::async(std::launch::async, [&] {
            return side.client.runMaintenanceTask(MaintenanceTask::flushDNS).succeeded;
        }));
    for (auto& task : tasks)
        EXPECT_TRUE(task.get());
    EXPECT_EQ(side.service.calls("Ping"), 1);
    EXPECT_EQ(side.service.opened(), 2);
    EXPECT_EQ(side.service.links(), 2); // that of the call that is under way is still there
    slow.reply(ServiceValues{int64_t{42}});
    EXPECT_EQ(size.get(), 42);
    EXPECT_EQ(side.service.links(), 1);
}

TEST(HelperClient, ADeviceJobKeepsItsLinkUntilItIsOver) {
    Side side;
    const auto status = [](DeviceJobPhase phase) {
        return values({ServiceBytes{encodeJson(DeviceJobStatus{.phase = phase, .bytesDone = 7})}});
    };
    side.service.on("StartDeviceJob", values({std::string("job-1")}))
        .on("DeviceJobStatus", status(DeviceJobPhase::copying))
        .on("DeviceJobStatus", values({ServiceBytes{R"({"phase": "flying"})"}}))
        .on("DeviceJobStatus", values({ServiceBytes{"{"}}))
        .on("DeviceJobStatus", status(DeviceJobPhase::done));
    side.service.on("RunMaintenanceTask", loss).on("RunMaintenanceTask", done).on("Ping", pong);
    const std::string id = side.client.startDeviceJob({.device = "/dev/sdx", .destination = "/tmp/x"});
    EXPECT_TRUE(side.client.runMaintenanceTask(MaintenanceTask::flushDNS).succeeded);
    EXPECT_EQ(side.service.links(), 2);
    EXPECT_EQ(side.client.deviceJobStatus(id).bytesDone, 7);
    for (int garbage = 0; garbage < 2; ++garbage)
        EXPECT_EQ(failureOf([&] { side.client.deviceJobStatus(id); }), Kind::badStatus);
    EXPECT_TRUE(side.client.deviceJobStatus(id).isOver());
    EXPECT_EQ(side.service.links(), 1);
}

TEST(HelperClient, ARemovalThatWasNotMadeIsAnError) {
    Side side;
    side.service.on("RemoveApplication", values({false})).on("RemoveAllowedItem", values({true}));
    EXPECT_EQ(failureOf([&] { side.client.removeApplication("/usr/bin/x"); }), Kind::refusedRemoval);
    EXPECT_EQ(failureOf([&] { side.client.removeAllowedItem("/x"); }), std::nullopt);
}

TEST(HelperClient, RepairRegistersAnewOnlyWhatDoesNotAnswerOrIsAnothersBuild) {
    struct Case {
        const char* what;
        Status status;
        std::string build;
        Step ping;
        bool asks;
        int added, removed;
    };
    const Case cases[] = {
        {"it answers", Status::enabled, "2", pong, true, 0, 0},
        {"it is silent", Status::enabled, "2", silence, true, 1, 0},
        {"it is silent and nobody is asked", Status::enabled, "2", silence, false, 1, 1},
        {"an older build", Status::enabled, "1", pong, true, 1, 0},
        {"its files are gone", Status::notRegistered, "2", pong, true, 1, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        Side side;
        side.registration->now = each.status;
        side.registration->asks = each.asks;
        side.defaults.set(buildKey, each.build);
        side.service.on("Ping", each.ping).on("Ping", pong);
        side.client.repair();
        EXPECT_EQ(side.registration->added, each.added);
        EXPECT_EQ(side.registration->removed, each.removed);
        EXPECT_EQ(side.client.lastPing(), "here");
        EXPECT_EQ(side.defaults.get<std::string>(buildKey), "2");
    }
    Side side;
    side.service.on("Ping", loss);
    side.registration->refusal = "Not authorised.";
    EXPECT_THROW(side.client.repair(), std::runtime_error);
}

TEST(HelperClient, AfterAnUpdateTheOldHelperIsReplacedOrSaidToWait) {
    struct Case {
        const char* what;
        std::optional<std::string> build;
        bool asks;
        std::string refusal;
        int added;
        bool waits;
    };
    const Case cases[] = {
        {"same build", "2", false, "", 0, false},         {"replaced", "1", false, "", 1, false},
        {"it would ask", "1", true, "", 0, true},         {"it fails", "1", false, "Disk full.", 1, true},
        {"another's", std::nullopt, false, "", 0, false},
    };
    const Texts texts(Language::en);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        Side side;
        side.registration->asks = each.asks;
        side.registration->refusal = each.refusal;
        if (each.build)
            side.defaults.set(buildKey, *each.build);
        else
            side.defaults.remove(buildKey);
        side.client.refreshRegistrationAfterUpdate(texts);
        EXPECT_EQ(side.registration->added, each.added);
        EXPECT_EQ(side.client.lastError(),
                  each.waits ? texts.text("helper-error.reregister-failed") : std::string());
        EXPECT_EQ(side.defaults.get<std::string>(buildKey) == "2", each.build && !each.waits);
    }
}

} // namespace vh::helper
