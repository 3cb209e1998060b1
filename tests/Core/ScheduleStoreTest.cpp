#include "Core/ScheduleStore.h"

#include "Platform/Files.h"
#include "Processes.h"
#include "support/FaultInjector.h"
#include "support/TempDir.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace vh {
namespace {

const Date noon = *parseIso8601("2026-03-01T12:00:00Z");

ScheduledTask hourly(std::string title, bool runIfMissed = false) {
    return makeTask(std::move(title), "system-junk", "system-junk", {}, HourlySchedule{1}, runIfMissed, noon,
                    LocalCalendar("UTC"));
}

std::vector<std::string> titles(const std::vector<ScheduledTask>& tasks) {
    std::vector<std::string> titles;
    for (const ScheduledTask& task : tasks)
        titles.push_back(task.title);
    return titles;
}

class ScheduleStoreTest : public testing::Test {
protected:
    ScheduleStore open() const { return ScheduleStore(file, LocalCalendar("UTC")); }

    test::TempDir dir;
    std::string file = dir / "data/schedules.json";
};

TEST_F(ScheduleStoreTest, KeepsTheOrderAndSharesEachChange) {
    ScheduleStore one(file);
    ScheduleStore two(file);
    ScheduledTask a = hourly("a");
    one.upsert(a);
    two.upsert(hourly("b"));
    a.title = "A";
    two.upsert(a);
    EXPECT_EQ(titles(one.tasks()), (std::vector<std::string>{"A", "b"}));
    EXPECT_EQ(one.task(a.id), a);
    EXPECT_TRUE(two.remove(a.id));
    EXPECT_FALSE(one.remove(a.id));
    EXPECT_FALSE(one.change(a.id, [](ScheduledTask&) { FAIL(); }));
    EXPECT_EQ(titles(one.tasks()), std::vector<std::string>{"b"});
    EXPECT_TRUE(readFile(file).starts_with("[\n  {\n    \"actionID\": \"system-junk\","));
}

TEST_F(ScheduleStoreTest, SkipsWhatWasMissedAndMarksWhatRan) {
    ScheduleStore store = open();
    const ScheduledTask late = hourly("late");
    const ScheduledTask patient = hourly("patient", true);
    store.upsert(late);
    store.upsert(patient);
    const Date inTime = noon + std::chrono::minutes(60 + 14);
    const Date tooLate = noon + std::chrono::minutes(60 + 16);
    EXPECT_EQ(titles(store.due(inTime)), (std::vector<std::string>{"late", "patient"}));
    EXPECT_TRUE(store.skipMissed(inTime).empty());
    EXPECT_EQ(titles(store.due(tooLate)), std::vector<std::string>{"patient"});
    EXPECT_EQ(store.skipMissed(tooLate), std::vector{late});
    EXPECT_EQ(store.task(late.id)->nextRun, tooLate + std::chrono::hours(1));
    EXPECT_EQ(store.task(late.id)->lastRun, std::nullopt);
    store.markRun(patient.id, tooLate, Outcome::warning);
    EXPECT_EQ(store.task(patient.id)->lastRun, tooLate);
    EXPECT_EQ(store.task(patient.id)->lastOutcome, Outcome::warning);
    EXPECT_TRUE(store.due(tooLate).empty());
    store.markRun(Uuid::random(), tooLate, Outcome::success);
    EXPECT_EQ(store.tasks().size(), 2u);
}

TEST_F(ScheduleStoreTest, TellsObserversOfChangesOnly) {
    ScheduleStore store = open();
    int told = 0;
    auto token = store.observe([&] { ++told; });
    const ScheduledTask task = hourly("a");
    store.upsert(task);
    store.upsert(*store.task(task.id));
    EXPECT_TRUE(store.skipMissed(noon).empty());
    EXPECT_EQ(told, 1);
    token.reset();
    store.remove(task.id);
    EXPECT_EQ(told, 1);
}

TEST_F(ScheduleStoreTest, GarbageIsEmptyAndKeptAside) {
    makeFolders(dir / "data");
    for (const std::string garbage : {"[{\"id\": 7}]", "", "{}"}) {
        writeFileAtomically(file, garbage);
        ScheduleStore store = open();
        EXPECT_TRUE(store.tasks().empty());
        EXPECT_EQ(readFile(file), garbage) << "reading changed the file";
        store.upsert(hourly("new"));
        EXPECT_EQ(readFile(file + ".damaged"), garbage);
        EXPECT_EQ(titles(open().tasks()), std::vector<std::string>{"new"});
    }
}

TEST_F(ScheduleStoreTest, WhatCannotBeWrittenWaitsForTheNextChange) {
    makeFolders(file); // a folder in the file's place
    ScheduleStore store = open();
    const ScheduledTask gone = hourly("gone");
    store.upsert(gone);
    store.upsert(hourly("kept"));
    store.remove(gone.id);
    EXPECT_EQ(titles(store.tasks()), std::vector<std::string>{"kept"});
    std::filesystem::remove(file);
    open().upsert(hourly("other's"));
    EXPECT_EQ(titles(store.tasks()), (std::vector<std::string>{"other's", "kept"}));
    store.upsert(hourly("next"));
    EXPECT_EQ(titles(open().tasks()), (std::vector<std::string>{"other's", "kept", "next"}));
}

TEST_F(ScheduleStoreTest, ProcessesThatAddAtOnceLoseNothing) {
    test::Processes others;
    for (const std::string who : {"a", "b", "c"})
        others.start([&] {
            ScheduleStore store = open();
            for (int i = 0; i < 30; ++i)
                store.upsert(hourly(fmt::format("{}{}", who, i)));
        });
    others.finish();
    const auto all = titles(open().tasks());
    EXPECT_EQ(std::set(all.begin(), all.end()).size(), 90u);
}

TEST_F(ScheduleStoreTest, AFailedOrKilledWriteLeavesOldOrNew) {
    const ScheduledTask old = hourly("old");
    const ScheduledTask added = hourly("added");
    const auto setUp = [&] {
        std::filesystem::remove_all(dir / "data");
        open().upsert(old);
    };
    const auto check = [&](const test::FaultPoint& fault) {
        const auto left = open().tasks();
        EXPECT_TRUE(left == std::vector{old} || (left == std::vector{old, added})) << fault.text();
    };
    test::forEachKill(
        setUp, [&] { open().upsert(added); }, check);
    std::vector<ScheduledTask> inMemory;
    const auto work = [&] {
        ScheduleStore store = open();
        store.upsert(added);
        inMemory = store.tasks();
    };
    test::forEachFault(setUp, work, [&](const test::FaultPoint& fault) {
        check(fault);
        EXPECT_FALSE(fault.thrown) << fault.text();
        EXPECT_EQ(inMemory.empty() ? Uuid() : inMemory.back().id, added.id) << fault.text();
    });
}

} // namespace
} // namespace vh
