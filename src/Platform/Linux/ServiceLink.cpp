#include "Platform/ServiceLink.h"

#include "Platform/Linux/ServiceModule.h"
#include "Platform/Module.h"
#include "Platform/PollLoop.h"

#include <atomic>
#include <thread>
#include <utility>

namespace vh {

namespace {

/// What the link shares with its thread, which may be the last to let go of it.
struct State {
    explicit State(const ServiceIdentity& identity)
        : bus(static_cast<ServiceModule*>(openModule("service"))->open(loop, identity)) {}

    PollLoop loop;
    std::unique_ptr<ServiceBus> bus;
    std::atomic<bool> isOver = false; ///< nobody is told of an end any more

    ServiceLink::Ends whileThere(ServiceLink::Ends ends) {
        return {[this, reply = std::move(ends.reply)](ServiceReply answer) {
                    if (!isOver)
                        reply(std::move(answer));
                },
                [this, lost = std::move(ends.lost)](std::string why) {
                    if (!isOver)
                        lost(std::move(why));
                }};
    }
};

class BusServiceLink : public ServiceLink {
public:
    explicit BusServiceLink(const ServiceIdentity& identity)
        : state_(std::make_shared<State>(identity)), thread_([state = state_] { state->loop.run(); }) {}

    ~BusServiceLink() override {
        state_->isOver = true;
        state_->loop.stop();
        // In the end of a call it is this link's own thread, which then ends alone.
        if (thread_.get_id() == std::this_thread::get_id())
            thread_.detach();
        else
            thread_.join();
    }

    void call(const ServiceMethod& method, const ServiceValues& arguments, Ends ends) override {
        state_->loop.post(
            [state = state_.get(), method, arguments, ends = state_->whileThere(std::move(ends))] {
                state->bus->call(method, arguments, ends);
            });
    }

private:
    const std::shared_ptr<State> state_;
    std::thread thread_;
};

} // namespace

std::shared_ptr<ServiceLink> openServiceLink(const ServiceIdentity& identity) {
    return std::make_shared<BusServiceLink>(identity);
}

} // namespace vh
