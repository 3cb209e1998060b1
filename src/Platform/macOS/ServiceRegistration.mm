#include "Platform/ServiceRegistration.h"

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>
#include <stdexcept>

namespace vh {

namespace {

/// A launch daemon whose property list lies in Contents/Library/LaunchDaemons of the application.
class DaemonRegistration : public ServiceRegistration {
public:
    explicit DaemonRegistration(const std::string& service)
        : daemon_([SMAppService daemonServiceWithPlistName:@((service + ".plist").c_str())]) {}

    HelperRegistrationStatus status() const override {
        switch (daemon_.status) {
        case SMAppServiceStatusEnabled:
            return HelperRegistrationStatus::enabled;
        case SMAppServiceStatusRequiresApproval:
            return HelperRegistrationStatus::requiresApproval;
        case SMAppServiceStatusNotRegistered:
            return HelperRegistrationStatus::notRegistered;
        case SMAppServiceStatusNotFound:
            return HelperRegistrationStatus::notFound;
        }
        return HelperRegistrationStatus::unknown;
    }

    /// Approval is given in System Settings, later: until then the status says so.
    void add() override {
        @autoreleasepool {
            NSError* error = nil;
            const bool isAdded = [daemon_ registerAndReturnError:&error];
            if (status() == HelperRegistrationStatus::requiresApproval)
                [SMAppService openSystemSettingsLoginItems];
            else if (!isAdded)
                throw std::runtime_error(error.localizedDescription.UTF8String);
        }
    }

    void remove() override {
        @autoreleasepool {
            NSError* error = nil;
            if (![daemon_ unregisterAndReturnError:&error])
                throw std::runtime_error(error.localizedDescription.UTF8String);
        }
    }

    bool mustAsk() const override { return false; }

private:
    SMAppService* daemon_;
};

} // namespace

std::unique_ptr<ServiceRegistration> openServiceRegistration(const std::string&, const std::string& service,
                                                             const std::string&) {
    return std::make_unique<DaemonRegistration>(service);
}

} // namespace vh
