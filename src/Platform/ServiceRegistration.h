#pragma once

#include <memory>
#include <string>

namespace vh {

/// Whether the system knows the root service.
enum class HelperRegistrationStatus {
    enabled,
    requiresApproval, ///< it is known, but switched off by whoever runs the system
    notRegistered,
    notFound, ///< its program does not lie beside this one
    unknown   ///< the system cannot be asked, such as one without a system bus
};

/// Makes the root service known to the system and takes it away again. Everything blocks. Any thread.
class ServiceRegistration {
public:
    virtual ~ServiceRegistration() = default;
    virtual HelperRegistrationStatus status() const = 0;
    /// Both ask the person for the right to do so, which may take minutes. They throw std::runtime_error that says why
    /// nothing was changed, or what.
    virtual void add() = 0;
    virtual void remove() = 0;
    /// Whether add and remove need to ask the person.
    virtual bool mustAsk() const = 0;
};

/// `program` is the name of the service's program, which lies beside this process's own or in "../libexec"; `service`
/// the name it has on the bus. `root` is a folder that stands for "/", for tests. Reads nothing before it is asked.
std::unique_ptr<ServiceRegistration>
openServiceRegistration(const std::string& program, const std::string& service, const std::string& root = {});

} // namespace vh
