#include "Platform/PollLoop.h"
#include "Platform/ServiceHost.h"
#include "Platform/ServiceLink.h"
#include "support/PrivateBus.h"

#include <benchmark/benchmark.h>
#include <semaphore>

namespace vh {
namespace {

const ServiceIdentity identity{"org.example.Bench", "/org/example/Bench", "org.example.Bench1",
                               "org.example.no"};
constexpr ServiceMethod echo{"Echo", "y", "y", ""};

struct Echo : ServiceHandler {
    std::optional<ServiceRefusal> check(const ServiceCall&) override { return std::nullopt; }
    void perform(ServiceCall call, Answer answer) override { answer(std::move(call.arguments)); }
    void peerGone(const ServicePeer&) override {}
};

/// A service that does nothing, on a bus of its own.
class Service {
public:
    Service() : thread_([this] { loop_.run(); }) {}
    ~Service() {
        loop_.stop();
        thread_.join();
    }

private:
    test::PrivateBus bus_{test::PrivateBus::Kind::system};
    PollLoop loop_;
    Echo handler_;
    std::unique_ptr<ServiceHost> host_ = openServiceHost(loop_, identity, {&echo, 1}, handler_, [] {});
    std::thread thread_;
};

void callOnce(ServiceLink& link, const ServiceValues& values) {
    std::binary_semaphore ended(0);
    link.call(echo, values,
              {[&](const ServiceReply&) { ended.release(); },
               [&](const std::string&) {
                   ended.release();
               }});
    ended.acquire();
}

/// From the call to its answer, with the thread changes on both sides; the argument is the number of bytes each way.
void callOverTheBus(benchmark::State& state) {
    const Service service;
    const auto link = openServiceLink(identity);
    const ServiceValues values{ServiceBytes{std::string(static_cast<size_t>(state.range(0)), 'x')}};
    callOnce(*link, values);
    for (auto _ : state)
        callOnce(*link, values);
}
BENCHMARK(callOverTheBus)->Arg(100)->Arg(1 << 20)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// With a connection of its own, and the bus asked who calls.
void connectAndCall(benchmark::State& state) {
    const Service service;
    const ServiceValues values{ServiceBytes{"x"}};
    for (auto _ : state)
        callOnce(*openServiceLink(identity), values);
}
BENCHMARK(connectAndCall)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
} // namespace vh
