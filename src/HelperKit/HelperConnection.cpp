#include "HelperKit/HelperConnection.h"

#include "HelperKit/HelperClientError.h"
#include "HelperKit/OnceBox.h"

namespace vh::helper {

namespace {

using Kind = HelperClientError::Kind;

struct Lost {
    std::string why;
};
using End = std::variant<ServiceReply, Lost>;

char kindOf(const ServiceValue& value) {
    static constexpr std::string_view kinds = "bxsy"; // as the alternatives stand
    return kinds[value.index()];
}

std::string kindsOf(const ServiceValues& values) {
    std::string kinds;
    for (const ServiceValue& value : values)
        kinds += kindOf(value);
    return kinds;
}

} // namespace

std::shared_ptr<ServiceLink> HelperConnection::present() {
    const std::lock_guard lock(mutex_);
    if (!link_)
        link_ = openLink_();
    return link_;
}

void HelperConnection::drop() {
    std::shared_ptr<ServiceLink> old; // goes outside the lock
    const std::lock_guard lock(mutex_);
    old.swap(link_);
}

void HelperConnection::dropIf(const std::shared_ptr<ServiceLink>& link) {
    const std::lock_guard lock(mutex_);
    if (link_ == link)
        link_.reset(); // the caller's hand still holds it
}

HelperConnection::Answer HelperConnection::call(const ServiceMethod& method,
                                                std::chrono::milliseconds timeout,
                                                const ServiceValues& arguments, const CancelToken& cancel) {
    // Shared with ends that may come long after the caller has gone.
    const auto box = std::make_shared<OnceBox<End>>();
    std::shared_ptr<ServiceLink> link;
    try {
        link = present();
        link->call(method, arguments,
                   {[box](ServiceReply reply) { box->end(std::move(reply)); },
                    [box](std::string why) {
                        box->end(Lost{std::move(why)});
                    }});
    } catch (const std::exception& error) {
        box->end(Lost{error.what()});
    }
    std::optional<End> end = box->wait(timeout, cancel);
    if (!end && cancel.isCancelled()) {
        dropIf(link);
        throw LeftToHelper();
    }
    if (!end)
        throw HelperClientError(Kind::timeout, std::string(method.name));
    if (const auto* lost = std::get_if<Lost>(&*end)) {
        dropIf(link);
        throw HelperClientError(Kind::connectionFailed, lost->why);
    }
    ServiceReply& reply = std::get<ServiceReply>(*end);
    if (const auto* refusal = std::get_if<ServiceRefusal>(&reply))
        throw HelperClientError(Kind::refused, refusal->text);
    auto& values = std::get<ServiceValues>(reply);
    if (kindsOf(values) != method.replies)
        throw HelperClientError(Kind::badStatus, std::string(method.name));
    return {std::move(values), std::move(link)};
}

} // namespace vh::helper
