#include "HelperKit/PeerScopedHelper.h"

#include "Core/Codec.h"
#include "HelperKit/HelperProtocol.h"
#include "HelperKit/HelperServiceError.h"

#include <array>
#include <span>

namespace vh::helper {

namespace {

constexpr size_t mostWorkers = 32;
constexpr size_t mostWorkersOfUser = 8;

const std::string& text(const ServiceCall& call) {
    return std::get<std::string>(call.arguments.at(0));
}

const std::string& bytes(const ServiceCall& call) {
    return std::get<ServiceBytes>(call.arguments.at(0)).bytes;
}

/// Of what is longer than crosses the connection, the end: it tells how the work ended.
std::string lastOf(std::string text) {
    if (text.size() <= mostServiceBytes)
        return text;
    size_t from = text.size() - mostServiceBytes;
    while ((text[from] & 0xC0) == 0x80) // the rest of a character that was cut
        ++from;
    return text.substr(from);
}

ServiceValues values(MaintenanceRunner::Result result) {
    return {result.succeeded, lastOf(std::move(result.output))};
}

using Check = void (*)(const HelperService& service, const ServiceCall& call);
using Perform = ServiceValues (*)(HelperService& service, const ServiceCall& call, const CancelToken& ending);

/// How one method is answered: what is refused without looking at a file, and the work.
struct Road {
    std::string_view method;
    Check check;
    Perform perform;
};

void nothingToCheck(const HelperService&, const ServiceCall&) {}

void notThereYet(const HelperService&, const ServiceCall&) {
    throw HelperServiceError("notThereYet", "The accounts of this computer cannot be managed yet.");
}

ServiceValues nothingDone(HelperService&, const ServiceCall&, const CancelToken&) {
    return {};
}

const std::array maintenanceRoads{
    Road{methods::ping.name, nothingToCheck,
         [](HelperService&, const ServiceCall&, const CancelToken&) {
             return ServiceValues{HelperService::pong()};
         }},
    Road{methods::removeAllowedItem.name,
         [](const HelperService& service, const ServiceCall& call) {
             service.checkRemoval(bytes(call), call.peer.userID);
         },
         [](HelperService& service, const ServiceCall& call, const CancelToken&) {
             service.removeAllowedItem(bytes(call), call.peer.userID);
             return ServiceValues{true};
         }},
    Road{methods::sizeOfAllowedDirectory.name,
         [](const HelperService& service, const ServiceCall& call) {
             service.checkSize(bytes(call), call.peer.userID);
         },
         [](HelperService& service, const ServiceCall& call, const CancelToken& ending) {
             return ServiceValues{service.sizeOfAllowedDirectory(bytes(call), call.peer.userID, ending)};
         }},
    Road{methods::runMaintenanceTask.name,
         [](const HelperService& service, const ServiceCall& call) {
             service.validateMaintenanceTask(text(call));
         },
         [](HelperService& service, const ServiceCall& call, const CancelToken& ending) {
             return values(service.runMaintenanceTask(text(call), ending));
         }},
};

const std::array deviceRoads{
    Road{methods::startDeviceJob.name,
         [](const HelperService&, const ServiceCall& call) {
             HelperService::checkDeviceJob(bytes(call), call.peer.userID);
         },
         [](HelperService& service, const ServiceCall& call, const CancelToken&) {
             return ServiceValues{
                 service.jobs().start(HelperService::checkDeviceJob(bytes(call), call.peer.userID),
                                      call.peer.userID, call.peer.connection)};
         }},
    Road{methods::deviceJobStatus.name, nothingToCheck,
         [](HelperService& service, const ServiceCall& call, const CancelToken&) {
             return ServiceValues{
                 ServiceBytes{encodeJson(service.jobs().status(text(call), call.peer.userID))}};
         }},
    Road{methods::cancelDeviceJob.name, nothingToCheck,
         [](HelperService& service, const ServiceCall& call, const CancelToken&) {
             return ServiceValues{service.jobs().cancel(text(call), call.peer.userID)};
         }},
};

template <bool verified>
void checkPackage(const HelperService& service, const ServiceCall& call) {
    service.packages().check(bytes(call), call.peer.userID, verified);
}

template <bool verified>
ServiceValues installPackage(HelperService& service, const ServiceCall& call, const CancelToken&) {
    return values(service.packages().install(bytes(call), call.peer.userID, verified));
}

const std::array softwareRoads{
    Road{methods::removeApplication.name,
         [](const HelperService& service, const ServiceCall& call) {
             service.checkApplicationRemoval(bytes(call));
         },
         [](HelperService& service, const ServiceCall& call, const CancelToken&) {
             service.removeApplication(bytes(call));
             return ServiceValues{true};
         }},
    Road{methods::installPackage.name, checkPackage<true>, installPackage<true>},
    Road{methods::installUnverifiedPackage.name, checkPackage<false>, installPackage<false>},
    Road{methods::installApplication.name,
         [](const HelperService& service, const ServiceCall& call) {
             service.applications().check(bytes(call), call.peer.userID);
         },
         [](HelperService& service, const ServiceCall& call, const CancelToken&) {
             return values(service.applications().install(bytes(call), call.peer.userID));
         }},
};

const std::array accountRoads{Road{methods::manageLocalAccount.name, notThereYet, nothingDone},
                              Road{methods::applyCompanyAdmin.name, notThereYet, nothingDone},
                              Road{methods::companyAdminPassword.name, notThereYet, nothingDone}};

/// Throws for a method that nobody knows, which the listener does not let through.
const Road& roadOf(const ServiceCall& call) {
    for (const std::span<const Road> roads :
         {std::span<const Road>(maintenanceRoads), std::span<const Road>(deviceRoads),
          std::span<const Road>(softwareRoads), std::span<const Road>(accountRoads)})
        for (const Road& road : roads)
            if (road.method == call.method.name)
                return road;
    throw std::logic_error("No such method: " + std::string(call.method.name));
}

/// Does it and turns what it throws into the refusal.
template <class Work>
ServiceReply replyOf(Work work) {
    try {
        return work();
    } catch (const HelperServiceError& error) {
        return error.refusal();
    } catch (const std::exception& error) {
        return HelperServiceError("failed", error.what()).refusal();
    }
}

} // namespace

PeerScopedHelper::PeerScopedHelper(HelperService::Dependencies dependencies)
    : service_(std::move(dependencies)), workers_(mostWorkers, mostWorkersOfUser) {}

PeerScopedHelper::~PeerScopedHelper() {
    end();
}

std::optional<ServiceRefusal> PeerScopedHelper::check(const ServiceCall& call) {
    ServiceReply reply = replyOf([&]() -> ServiceReply {
        roadOf(call).check(service_, call);
        return ServiceValues{};
    });
    if (auto* refusal = std::get_if<ServiceRefusal>(&reply))
        return std::move(*refusal);
    return std::nullopt;
}

void PeerScopedHelper::perform(ServiceCall call, Answer answer) {
    const uint32_t user = call.peer.userID;
    const auto work = [this, call = std::move(call), answer] {
        ServiceReply reply =
            replyOf([&]() -> ServiceReply { return roadOf(call).perform(service_, call, ending_); });
        return [answer, reply = std::move(reply)] {
            answer(reply);
        };
    };
    const ServiceReply started = replyOf([&]() -> ServiceReply {
        if (!workers_.start(user, work))
            throw HelperServiceError("busy", "The helper is busy with other work.");
        return ServiceValues{};
    });
    if (std::holds_alternative<ServiceRefusal>(started))
        answer(started);
}

void PeerScopedHelper::peerGone(const ServicePeer& peer) {
    service_.jobs().cancelAllOf(peer.connection);
}

bool PeerScopedHelper::isBusy() const {
    return workers_.areBusy() || service_.jobs().isBusy();
}

} // namespace vh::helper
