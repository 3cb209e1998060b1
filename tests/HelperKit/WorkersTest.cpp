#include "HelperKit/Workers.h"

#include <future>
#include <gtest/gtest.h>

namespace vh::helper {
namespace {

TEST(Workers, GiveAUserSoManyPlacesAndNobodyElseWaits) {
    std::promise<void> opened;
    const auto gate = opened.get_future().share();
    Workers workers(2, 1);
    const auto work = [gate]() -> Workers::Tell {
        gate.wait();
        return [] {
        };
    };
    EXPECT_TRUE(workers.start(1, work));
    EXPECT_FALSE(workers.start(1, work)) << "its own place is taken";
    EXPECT_TRUE(workers.start(2, work));
    EXPECT_FALSE(workers.start(3, work)) << "all are";
    EXPECT_TRUE(workers.areBusy());
    opened.set_value();
}

TEST(Workers, WhoHearsOfTheEndMayBeginTheNext) {
    std::promise<bool> second;
    Workers workers(1, 1);
    const auto next = [&]() -> Workers::Tell {
        return [&] {
            second.set_value(true);
        };
    };
    ASSERT_TRUE(workers.start(1, [&]() -> Workers::Tell {
        return [&] {
            if (!workers.start(1, next))
                second.set_value(false);
        };
    }));
    EXPECT_TRUE(second.get_future().get());
}

} // namespace
} // namespace vh::helper
