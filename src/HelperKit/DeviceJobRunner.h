#pragma once

#include "HelperKit/DeviceJob.h"

#include <cstdint>
#include <memory>
#include <string>

namespace vh::helper {

/// The device jobs of the helper, each on a thread of its own, so that nothing else waits for a disk. Any thread.
class DeviceJobRunner {
public:
    DeviceJobRunner();
    /// Cancels what runs and waits for its end.
    ~DeviceJobRunner();
    DeviceJobRunner(const DeviceJobRunner&) = delete;
    DeviceJobRunner& operator=(const DeviceJobRunner&) = delete;

    /// Starts a job and gives its identifier. The destination is opened with the rights of user `owner` alone, and is
    /// his. Throws HelperServiceError (badJobSpec); nothing is left then.
    std::string start(const DeviceJobSpec& spec, uint32_t owner, const std::string& connection);
    /// Throws HelperServiceError (unknownJob), also for the job of a user other than `owner`.
    DeviceJobStatus status(const std::string& id, uint32_t owner) const;
    /// Whether that user had such a job to cancel. The partial image goes.
    bool cancel(const std::string& id, uint32_t owner);
    /// The peer has left: its jobs have nobody to tell.
    void cancelAllOf(const std::string& connection);
    bool isBusy() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::helper
