#pragma once

#include "HelperKit/HelperService.h"
#include "HelperKit/Workers.h"
#include "Platform/ServiceHost.h"

#include <functional>
#include <optional>

namespace vh::helper {

/// The helper as its peers see it: each call is dispatched with the user that the connection tells, and done on a
/// thread of its own. Loop's thread.
class PeerScopedHelper : public ServiceHandler {
public:
    explicit PeerScopedHelper(HelperService::Dependencies dependencies = HelperService::ofThisMachine());
    /// Ends, and waits for what may not be stopped.
    ~PeerScopedHelper() override;

    std::optional<ServiceRefusal> check(const ServiceCall& call) override;
    void perform(ServiceCall call, Answer answer) override;
    /// Its device jobs end. What changes the system goes on to its end.
    void peerGone(const ServicePeer& peer) override;
    /// Whether anything is under way.
    bool isBusy() const;
    /// Stops what may be stopped.
    void end() { ending_.cancel(); }

private:
    HelperService service_;
    CancelToken ending_;
    Workers workers_;
};

} // namespace vh::helper
