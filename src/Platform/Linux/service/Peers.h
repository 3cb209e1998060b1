#pragma once

#include "Platform/Linux/modules/BusCalls.h"
#include "Platform/ServiceHost.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vh {

/// Who the peers of a bus are, as the bus tells, and when they leave. Waits for nothing. The bus's thread.
class Peers {
public:
    /// `gone` is called once for each peer that was told.
    Peers(sd_bus* bus, std::function<void(const ServicePeer&)> gone) : bus_(bus), gone_(std::move(gone)) {}

    /// Calls `told` with the peer of this unique name: at once when it is known, otherwise as soon as the bus has
    /// answered; with nothing when it left before or the bus does not know its user.
    void identify(const std::string& name, std::function<void(const ServicePeer*)> told);

private:
    struct Entry {
        Peers& owner;
        ServicePeer peer;
        BusSlot departure, question;
        bool isKnown = false;
        std::vector<std::function<void(const ServicePeer*)>> waiting;
    };

    void ask(Entry& entry);
    void answered(Entry& entry, sd_bus_message* answer);
    void leave(const std::string& name);

    sd_bus* bus_;
    std::function<void(const ServicePeer&)> gone_;
    std::map<std::string, Entry> entries_;
};

} // namespace vh
