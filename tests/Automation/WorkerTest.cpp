#include "Automation/Worker.h"
#include "Platform/PollLoop.h"

#include <gtest/gtest.h>

namespace vh::automation {
namespace {

TEST(Worker, WorksElsewhereAndTellsTheMainThread) {
    PollLoop loop;
    Worker worker(loop);
    const auto here = std::this_thread::get_id();
    std::thread::id workedOn;
    std::thread::id toldOn;
    worker.run([&] { workedOn = std::this_thread::get_id(); },
               [&] {
                   toldOn = std::this_thread::get_id();
                   loop.stop();
               });
    loop.run();
    EXPECT_NE(workedOn, here);
    EXPECT_EQ(toldOn, here);
}

TEST(Worker, WaitsForItsThreadsAndDropsTheirNews) {
    PollLoop loop;
    bool worked = false;
    bool told = false;
    {
        Worker worker(loop);
        worker.run([&] { worked = true; }, [&] { told = true; });
    }
    EXPECT_TRUE(worked);
    loop.post([&] { loop.stop(); });
    loop.run();
    EXPECT_FALSE(told);
}

} // namespace
} // namespace vh::automation
