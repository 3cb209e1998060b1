#include "helper/Serving.h"

#include "HelperKit/HelperProtocol.h"
#include "HelperKit/PeerScopedHelper.h"
#include "Platform/PollLoop.h"
#include "Platform/ServiceHost.h"
#include "Platform/Terminal.h"

#include <utility>

namespace vh::helper {

namespace {

constexpr std::chrono::milliseconds endingPeriod{20};

/// Hands calls on and notes that there were some.
class NotedCalls : public ServiceHandler {
public:
    explicit NotedCalls(ServiceHandler& handler) : handler_(handler) {}

    std::optional<ServiceRefusal> check(const ServiceCall& call) override {
        hasCalls_ = true;
        return handler_.check(call);
    }
    void perform(ServiceCall call, Answer answer) override {
        handler_.perform(std::move(call), std::move(answer));
    }
    void peerGone(const ServicePeer& peer) override { handler_.peerGone(peer); }

    bool wereSinceLastLook() { return std::exchange(hasCalls_, false); }

private:
    ServiceHandler& handler_;
    bool hasCalls_ = false;
};

} // namespace

void serve(std::chrono::milliseconds idleLimit) {
    const CancelToken asked = cancelOnInterrupt();
    PollLoop loop;
    PeerScopedHelper helper;
    NotedCalls calls(helper);
    bool isLost = false;
    const auto host = openServiceHost(loop, helperIdentity(), helperMethods, calls, [&] {
        isLost = true;
        loop.stop();
    });
    bool wasWorking = false;
    auto watch = loop.every(idleLimit, [&] {
        const bool isCalled = calls.wereSinceLastLook();
        const bool isWorking = host->isBusy() || helper.isBusy();
        if (!isCalled && !isWorking && !wasWorking) // what came of a device job can be asked for a while
            loop.stop();
        wasWorking = isWorking;
    });
    loop.run(asked);
    if (isLost)
        return;
    host->leave();
    if (asked.isCancelled())
        helper.end();
    // Who still types a password when the end is asked for is not waited for.
    watch = loop.every(endingPeriod, [&] {
        if (asked.isCancelled() ? !host->isPerforming() : !host->isBusy())
            loop.stop();
    });
    loop.run();
}

} // namespace vh::helper
