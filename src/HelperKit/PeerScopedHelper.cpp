#include "HelperKit/PeerScopedHelper.h"

#include "HelperKit/HelperProtocol.h"
#include "HelperKit/HelperServiceError.h"

#include <algorithm>

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

ServiceValues values(MaintenanceRunner::Result result) {
    return {result.succeeded, std::move(result.output)};
}

/// How one method is answered: what is refused without looking at a file, and the work.
struct Road {
    std::string_view method;
    void (*check)(const HelperService& service, const ServiceCall& call);
    ServiceValues (*perform)(HelperService& service, const ServiceCall& call, const CancelToken& ending);
};

void nothingToCheck(const HelperService&, const ServiceCall&) {}

const std::array roads{
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

const Road* roadOf(const ServiceCall& call) {
    const auto found = std::ranges::find(roads, call.method.name, &Road::method);
    return found == roads.end() ? nullptr : &*found;
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

PeerScopedHelper::PeerScopedHelper(HelperService::World world)
    : service_(std::move(world)), workers_(mostWorkers, mostWorkersOfUser) {}

PeerScopedHelper::~PeerScopedHelper() {
    end();
}

std::optional<ServiceRefusal> PeerScopedHelper::check(const ServiceCall& call) {
    ServiceReply reply = replyOf([&]() -> ServiceReply {
        const Road* road = roadOf(call);
        if (road == nullptr)
            throw HelperServiceError("notThereYet", std::string(call.method.name) + " is not there yet.");
        road->check(service_, call);
        return ServiceValues{};
    });
    if (auto* refusal = std::get_if<ServiceRefusal>(&reply))
        return std::move(*refusal);
    return std::nullopt;
}

void PeerScopedHelper::perform(ServiceCall call, Answer answer) {
    const uint32_t user = call.peer.userID;
    const auto work = [this, call = std::move(call), answer] {
        answer(replyOf([&]() -> ServiceReply {
            const Road* road = roadOf(call);
            return road->perform(service_, call, ending_);
        }));
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
