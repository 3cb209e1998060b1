#include "Platform/ServiceLink.h"

#include "Platform/macOS/XpcValues.h"

#include <mutex>
#include <stdexcept>
#include <utility>

namespace vh {

namespace {

/// Held while an end is told, so that none is once the link is gone; an end may let go of the link itself.
struct Life {
    std::recursive_mutex mutex;
    bool isOver = false;
};

void end(const ServiceLink::Ends& ends, const std::string& kinds, xpc_object_t answer) {
    if (xpc_get_type(answer) != XPC_TYPE_DICTIONARY) {
        const char* const why = xpc_dictionary_get_string(answer, XPC_ERROR_KEY_DESCRIPTION);
        return ends.lost(why != nullptr ? why : "the connection broke");
    }
    const char* const code = xpc_dictionary_get_string(answer, xpcKeys::code);
    const char* const words = xpc_dictionary_get_string(answer, xpcKeys::words);
    if (code != nullptr && words != nullptr)
        return ends.reply(ServiceRefusal{code, words});
    if (auto values = readValues(xpc_dictionary_get_value(answer, xpcKeys::values), kinds))
        return ends.reply(std::move(*values));
    ends.lost("the answer could not be read");
}

class XpcServiceLink : public ServiceLink {
public:
    explicit XpcServiceLink(const ServiceIdentity& identity)
        : queue_(dispatch_queue_create(identity.name.c_str(), nullptr)),
          connection_(xpc_connection_create_mach_service(identity.name.c_str(), queue_,
                                                         XPC_CONNECTION_MACH_SERVICE_PRIVILEGED)) {
        const bool isSafe = requireSigned(connection_, identity.name);
        // A connection that breaks is told to each of its calls.
        xpc_connection_set_event_handler(connection_, ^(xpc_object_t){
                                         });
        xpc_connection_resume(connection_);
        if (!isSafe) {
            close();
            throw std::runtime_error("the system cannot check who the helper is");
        }
    }

    ~XpcServiceLink() override {
        {
            const std::lock_guard lock(life_->mutex);
            life_->isOver = true;
        }
        close();
    }

    void call(const ServiceMethod& method, const ServiceValues& arguments, Ends ends) override {
        const Xpc array = arrayOf(method.arguments, arguments);
        if (!array)
            return dispatchEnd([ends = std::move(ends)] {
                ends.reply(
                    ServiceRefusal{serviceRefusals::badArguments, "The call is too long or holds no text."});
            });
        const Xpc message = ownXpc(xpc_dictionary_create(nullptr, nullptr, 0));
        xpc_dictionary_set_string(message.get(), xpcKeys::method, std::string(method.name).c_str());
        xpc_dictionary_set_value(message.get(), xpcKeys::values, array.get());
        const std::string kinds(method.replies);
        const std::shared_ptr<Life> life = life_;
        xpc_connection_send_message_with_reply(connection_, message.get(), queue_, ^(xpc_object_t answer) {
          const std::lock_guard lock(life->mutex);
          if (!life->isOver)
              end(ends, kinds, answer);
        });
    }

private:
    void dispatchEnd(std::function<void()> tell) {
        const std::shared_ptr<Life> life = life_;
        dispatch_async(queue_, ^{
          const std::lock_guard lock(life->mutex);
          if (!life->isOver)
              tell();
        });
    }

    void close() {
        xpc_connection_cancel(connection_);
        xpc_release(connection_);
        dispatch_release(queue_);
    }

    const dispatch_queue_t queue_;
    const xpc_connection_t connection_;
    const std::shared_ptr<Life> life_ = std::make_shared<Life>();
};

} // namespace

std::shared_ptr<ServiceLink> openServiceLink(const ServiceIdentity& identity) {
    return std::make_shared<XpcServiceLink>(identity);
}

} // namespace vh
