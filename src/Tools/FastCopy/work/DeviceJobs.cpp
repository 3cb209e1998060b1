#include "HelperKit/DeviceJobRunner.h"
#include "HelperKit/HelperClient.h"
#include "Platform/Host.h"
#include "Tools/FastCopy/work/DiskCopy.h"

namespace vh::automation {

namespace {

constexpr uint32_t administrator = 0;

} // namespace

DeviceJobs DeviceJobs::of(helper::HelperClient& client) {
    return isAdministrator() ? ofThisProcess() : throughHelper(client);
}

DeviceJobs DeviceJobs::throughHelper(helper::HelperClient& client) {
    return {[&client](const Texts& texts) -> std::string {
                const HelperRegistrationStatus status = client.refreshStatus();
                if (status == HelperRegistrationStatus::enabled)
                    return {};
                return helper::HelperClientError::unavailable(status).text(texts);
            },
            [&client](const helper::DeviceJobSpec& spec) { return client.startDeviceJob(spec); },
            [&client](const std::string& id) { return client.deviceJobStatus(id); },
            [&client](const std::string& id) {
                return client.cancelDeviceJob(id);
            }};
}

DeviceJobs DeviceJobs::ofThisProcess() {
    const auto runner = std::make_shared<helper::DeviceJobRunner>();
    return {[](const Texts&) { return std::string(); },
            [runner](const helper::DeviceJobSpec& spec) { return runner->start(spec, administrator, {}); },
            [runner](const std::string& id) { return runner->status(id, administrator); },
            [runner](const std::string& id) {
                return runner->cancel(id, administrator);
            }};
}

} // namespace vh::automation
