#pragma once

#include "HelperKit/DeviceJobRunner.h"
#include "Platform/ServiceHost.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vh::helper {

/// What the helper does, for any peer: its policies and their order. Blocks; called off the listener's thread.
class HelperService;

/// The helper as its peers see it: each call is dispatched with the user that the connection tells. Long work runs on
/// threads of its own. Loop's thread.
class PeerScopedHelper : public ServiceHandler {
public:
    PeerScopedHelper();
    ~PeerScopedHelper() override;

    std::optional<ServiceRefusal> check(const ServiceCall& call) override;
    void perform(ServiceCall call, Answer answer) override;
    void peerGone(const ServicePeer& peer) override;
    /// Whether work is under way that has no call waiting for it.
    bool isBusy() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::helper
