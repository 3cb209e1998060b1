#include "app/Background.h"

#include "app/MainThreadDispatcher.h"
#include "app/RecordListModel.h"
#include "support/FakeModule.h"
#include "support/view/MainThread.h"

#include <gmock/gmock.h>
#include <optional>
#include <thread>

namespace vh::app::test {
namespace {

using testing::ElementsAre;

TEST(Background, GivesResultsAndExceptionsBackOnTheMainThread) {
    Background line;
    const auto mainThread = std::this_thread::get_id();
    std::vector<std::string> heard;
    line.run(
        [&](const Background::Task& task) {
            task.tell([&] { heard.push_back("half"); });
            return std::this_thread::get_id() == mainThread ? "main" : "worker";
        },
        [&](std::future<const char*> result) {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            heard.push_back(result.get());
        });
    EXPECT_TRUE(line.isBusy());
    ASSERT_TRUE(waitFor([&] { return !line.isBusy(); }));
    EXPECT_THAT(heard, ElementsAre("half", "worker"));

    line.run([](const Background::Task&) { throw std::runtime_error("no"); },
             [&](std::future<void> result) { EXPECT_THROW(result.get(), std::runtime_error); });
    ASSERT_TRUE(waitFor([&] { return !line.isBusy(); }));
}

TEST(Background, TheNewestRequestWins) {
    Background line;
    Gate gate;
    gate.close();
    std::vector<int> results;
    for (int i = 0; i < 5; ++i)
        line.run(
            [&gate, i](const Background::Task& task) {
                if (i < 4)
                    gate.pass(task.cancel);
                return i;
            },
            [&](std::future<int> result) { results.push_back(result.get()); });
    ASSERT_TRUE(waitFor([&] { return !line.isBusy(); }));
    settle();
    EXPECT_THAT(results, ElementsAre(4));
}

TEST(Background, NothingIsCalledOnceItHasGone) {
    bool called = false;
    bool finished = false;
    Gate gate;
    gate.close();
    {
        Background line;
        line.run(
            [&](const Background::Task& task) {
                gate.pass(task.cancel);
                task.tell([&] { called = true; });
                finished = true;
            },
            [&](std::future<void>) { called = true; });
        ASSERT_TRUE(waitFor([&] { return gate.isWaitedAt(); }));
    }
    EXPECT_TRUE(finished) << "it waits for its work";
    settle();
    EXPECT_FALSE(called);
}

TEST(MainThreadDispatcher, IsSafeToKnockAtAfterTheObjectHasGone) {
    auto object = std::make_unique<QObject>();
    auto dispatcher = std::make_optional<MainThreadDispatcher>(object.get());
    const auto post = dispatcher->post();
    int calls = 0;
    std::thread([&] { post([&] { ++calls; }); }).join();
    EXPECT_EQ(calls, 0);
    settle();
    EXPECT_EQ(calls, 1);
    dispatcher.reset();
    object.reset();
    post([&] { ++calls; });
    settle();
    EXPECT_EQ(calls, 1);
}

struct Letter {
    char name;
    int value = 0;
    char key() const { return name; }
};

TEST(RecordListModel, KeepsTheRowsThatStay) {
    using Model = RecordListModel<Letter>;
    static constexpr Model::Role roles[] = {{"value", [](const Letter& row) {
                                                 return QVariant(row.value);
                                             }}};
    const struct {
        std::string before, after;
        std::vector<std::string> told;
    } cases[] = {
        {"abc", "abc", {"changed 0-2"}},
        {"bc", "abc", {"inserted 0-0", "changed 1-2"}},
        {"abcd", "ad", {"removed 1-2", "changed 0-0", "changed 1-1"}},
        {"abc", "axc", {"removed 1-1", "inserted 1-1", "changed 0-0", "changed 2-2"}},
        {"aa", "a", {"removed 1-1", "changed 0-0"}},
        {"", "ab", {"inserted 0-1"}},
        {"ab", "", {"removed 0-1"}},
    };
    for (const auto& each : cases) {
        const auto letters = [](const std::string& names, int value) {
            std::vector<Letter> rows;
            for (const char name : names)
                rows.push_back({name, value});
            return rows;
        };
        Model model(roles);
        model.setRows(letters(each.before, 1));
        std::vector<std::string> told;
        const auto note = [&](const char* what, int first, int last) {
            told.push_back(std::string(what) + " " + std::to_string(first) + "-" + std::to_string(last));
        };
        using Base = QAbstractItemModel;
        QObject::connect(&model, &Base::rowsInserted, [&](auto, int a, int b) { note("inserted", a, b); });
        QObject::connect(&model, &Base::rowsRemoved, [&](auto, int a, int b) { note("removed", a, b); });
        QObject::connect(&model, &Base::dataChanged,
                         [&](auto a, auto b) { note("changed", a.row(), b.row()); });
        model.setRows(letters(each.after, 2));
        EXPECT_EQ(told, each.told) << each.before << " to " << each.after;
        std::string names;
        for (const Letter& row : model.rows()) {
            names += row.name;
            EXPECT_EQ(row.value, 2);
        }
        EXPECT_EQ(names, each.after);
    }
}

} // namespace
} // namespace vh::app::test
