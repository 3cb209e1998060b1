#pragma once

#include "Platform/ServiceLink.h"
#include "Platform/ServiceRegistration.h"

#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <stdexcept>

namespace vh::test {

/// A bus with a root service whose answers a test says, one step a call; without a step a call waits for ever.
/// Any thread.
class FakeRootService {
public:
    using Step = std::function<void(const ServiceLink::Ends&)>;

    static Step reply(ServiceReply reply) {
        return [reply](const ServiceLink::Ends& ends) {
            ends.reply(reply);
        };
    }
    static Step lose() {
        return [](const ServiceLink::Ends& ends) {
            ends.lost("gone");
        };
    }

    /// The next call of `method`, or all that follow the last step.
    FakeRootService& on(std::string_view method, Step step) {
        const std::lock_guard lock(mutex_);
        steps_[std::string(method)].push_back(std::move(step));
        return *this;
    }

    std::shared_ptr<ServiceLink> open() {
        ++opened_;
        return std::make_shared<Link>(*this);
    }
    int calls(std::string_view method) {
        const std::lock_guard lock(mutex_);
        return calls_[std::string(method)];
    }
    int opened() const { return opened_; }
    /// Links that are held by somebody.
    int links() const { return links_; }

private:
    class Link : public ServiceLink {
    public:
        explicit Link(FakeRootService& service) : service_(service) { ++service_.links_; }
        ~Link() override { --service_.links_; }
        void call(const ServiceMethod& method, const ServiceValues&, Ends ends) override {
            service_.take(std::string(method.name), ends);
        }

    private:
        FakeRootService& service_;
    };

    void take(const std::string& method, const ServiceLink::Ends& ends) {
        Step step;
        {
            const std::lock_guard lock(mutex_);
            ++calls_[method];
            auto& steps = steps_[method];
            if (!steps.empty())
                step = steps.front();
            if (steps.size() > 1)
                steps.pop_front();
        }
        if (step)
            step(ends);
    }

    std::mutex mutex_;
    std::map<std::string, std::deque<Step>> steps_;
    std::map<std::string, int> calls_;
    std::atomic<int> opened_ = 0;
    std::atomic<int> links_ = 0;
};

/// What the system knows of the service; a test reads what was done to it.
class FakeRegistration : public ServiceRegistration {
public:
    HelperRegistrationStatus status() const override { return now; }
    void add() override {
        ++added;
        if (!refusal.empty())
            throw std::runtime_error(refusal);
        now = HelperRegistrationStatus::enabled;
    }
    void remove() override {
        ++removed;
        if (!refusal.empty())
            throw std::runtime_error(refusal);
        now = HelperRegistrationStatus::notRegistered;
    }
    bool mustAsk() const override { return asks; }

    std::atomic<HelperRegistrationStatus> now = HelperRegistrationStatus::enabled;
    std::atomic<bool> asks = false;
    std::atomic<int> added = 0;
    std::atomic<int> removed = 0;
    std::string refusal; ///< why nothing is changed
};

} // namespace vh::test
