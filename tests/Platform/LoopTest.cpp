#include "Platform/PollLoop.h"
#include "Platform/Posix/Pipe.h"
#include "support/TurnedLoop.h"

#include <csignal>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <pthread.h>
#include <unistd.h>

using namespace vh;
using namespace vh::test;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

TEST(TurnedLoop, callsTimersAtTheirOwnMoments) {
    TurnedLoop loop;
    const Clock clock = loop.clock();
    std::vector<std::string> calls;
    const auto note = [&](const std::string& what) {
        calls.push_back(fmt::format("{} {}", what, (clock() - TurnedLoop::defaultStart) / 1ms));
    };
    const auto often = loop.every(20ms, [&] { note("often"); });
    MainLoop::Token chained;
    const auto first = loop.after(30ms, [&] {
        loop.post([&] { note("posted"); });
        chained = loop.after(5ms, [&] { note("chained"); });
    });
    const auto never = loop.after(61ms, [&] { note("never"); });
    loop.advance(60ms);
    EXPECT_THAT(calls, ElementsAre("often 20", "posted 30", "chained 35", "often 40", "often 60"));
}

TEST(MainLoop, letsGoOfTokensFromAnyCallback) {
    TurnedLoop loop;
    const Pipe pipe = openPipe();
    int calls = 0;
    // Each pair is ready in the same round, and whoever is called first ends both.
    std::vector<MainLoop::Token> tokens(2);
    const auto endAll = [&] {
        ++calls;
        for (MainLoop::Token& token : tokens)
            token.reset();
    };
    for (MainLoop::Token& token : tokens)
        token = loop.every(1ms, endAll);
    loop.advance(10ms);
    EXPECT_EQ(calls, 1);
    for (MainLoop::Token& token : tokens)
        token = loop.watch(pipe.reading.get(), MainLoop::Readiness::readable, endAll);
    ASSERT_EQ(::write(pipe.writing.get(), "x", 1), 1);
    loop.pump();
    EXPECT_EQ(calls, 2);
}

TEST(MainLoop, turnsInsideACallbackAndOutlivedByATokenToo) {
    MainLoop::Token outliving;
    std::vector<int> order;
    {
        TurnedLoop loop;
        outliving = loop.every(1ms, [] {});
        loop.post([&] {
            order.push_back(1);
            loop.pump();
            order.push_back(3);
        });
        loop.post([&] { order.push_back(2); });
        loop.pump();
    }
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(PollLoop, postsWithoutEndDoNotStarveTimersAndDescriptors) {
    PollLoop loop;
    Pipe pipe = openPipe();
    bool wasRead = false;
    bool wasTimed = false;
    std::function<void()> postAgain = [&] {
        if (wasRead && wasTimed)
            loop.stop();
        else
            loop.post(postAgain);
    };
    loop.post(postAgain);
    MainLoop::Token reading = loop.watch(pipe.reading.get(), MainLoop::Readiness::readable, [&] {
        wasRead = true;
        reading.reset();
    });
    const auto timer = loop.after(1ms, [&] { wasTimed = true; });
    pipe.writing.reset(); // the end of what is read counts as readable
    loop.run();
    EXPECT_TRUE(wasRead && wasTimed);
}

TEST(PollLoop, keepsTheOrderOfWhatThreadsPostAndStops) {
    PollLoop loop;
    constexpr int many = 10'000;
    std::vector<int> posted;
    std::thread other([&] {
        for (int i = 0; i < many; ++i)
            loop.post([&, i] { posted.push_back(i); });
        loop.post([&] { loop.stop(); });
    });
    loop.run();
    other.join();
    EXPECT_EQ(posted.size(), size_t{many});
    EXPECT_TRUE(std::ranges::is_sorted(posted));
}

const CancelToken& signalled() {
    static const CancelToken token;
    return token;
}

TEST(PollLoop, endsWhenCancelledByAThreadOrASignal) {
    const auto took = [](const CancelToken& cancel, const std::function<void()>& cancelIt) {
        PollLoop loop;
        loop.post([&] { std::thread(cancelIt).detach(); });
        const auto start = std::chrono::steady_clock::now();
        loop.run(cancel);
        return std::chrono::steady_clock::now() - start;
    };
    const CancelToken cancel;
    EXPECT_LT(took(cancel, [cancel] { cancel.cancel(); }), 1s);
    signalled();
    const auto before = ::signal(SIGUSR1, [](int) { signalled().cancel(); });
    EXPECT_LT(took(signalled(), [here = ::pthread_self()] { ::pthread_kill(here, SIGUSR1); }), 1s);
    ::signal(SIGUSR1, before);
}

} // namespace
