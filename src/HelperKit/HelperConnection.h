#pragma once

#include "Platform/CancelToken.h"
#include "Platform/ServiceLink.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace vh::helper {

/// The link to the helper, opened when first needed and again after it was lost. Any thread.
class HelperConnection {
public:
    using OpenLink = std::function<std::shared_ptr<ServiceLink>()>;

    struct Answer {
        ServiceValues values; ///< of the kinds that the method names
        std::shared_ptr<ServiceLink> link;
    };

    explicit HelperConnection(OpenLink openLink) : openLink_(std::move(openLink)) {}

    /// Of the reply, the link's loss, the deadline and the cancel the first one counts. Throws HelperClientError:
    /// connectionFailed, timeout, refused or badStatus; and LeftToHelper, after which a link that nobody else uses
    /// closes, so that a call about which a person is still being asked is never begun.
    Answer call(const ServiceMethod& method, std::chrono::milliseconds timeout,
                const ServiceValues& arguments, const CancelToken& cancel = {});
    /// The next call opens another link. Calls under way keep theirs, so that none ends for the sake of another; a link
    /// without calls closes, and the helper stops what its peer waits for no more.
    void drop();

private:
    std::shared_ptr<ServiceLink> present();
    void dropIf(const std::shared_ptr<ServiceLink>& link);

    const OpenLink openLink_;
    std::mutex mutex_;
    std::shared_ptr<ServiceLink> link_;
};

} // namespace vh::helper
