#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <variant>
#include <vector>

struct sd_bus_message;

namespace vh::test {

/// A stand-in for a service on a PrivateBus, with a thread of its own. Methods and properties go by their whole names,
/// such as "org.freedesktop.UPower.OnBattery".
class BusService {
public:
    /// As polkit answers.
    struct Verdict {
        bool isAuthorized;
    };
    using Value = std::variant<bool, uint32_t, uint64_t, std::vector<std::string>, Verdict>;

    /// Throws std::runtime_error when it cannot have the name on the bus at `address`.
    BusService(const std::string& address, const std::string& name, const std::string& path);
    ~BusService();
    BusService(const BusService&) = delete;
    BusService& operator=(const BusService&) = delete;

    /// What a property or a method answers from now on; a change of a property is announced on the bus.
    void setProperty(const std::string& name, Value value);
    void setReply(const std::string& method, Value value);
    /// Calls are taken and never answered.
    void beSilent() { silent_ = true; }

    /// One method call, with the texts among its arguments.
    struct Call {
        std::string method;
        std::vector<std::string> texts;
    };
    std::vector<Call> calls() const;

private:
    struct Connection;
    int answer(sd_bus_message* message);
    void announce(const std::string& property, const Value& value);
    void run();

    std::string path_;
    std::unique_ptr<Connection> connection_;
    mutable std::mutex mutex_;
    std::map<std::string, Value> properties_, replies_;
    std::vector<std::string> changed_;
    std::vector<Call> calls_;
    std::atomic<bool> silent_ = false, ends_ = false;
    std::thread thread_;
};

} // namespace vh::test
