#include "Core/Codec.h"
#include "HelperKit/HelperProtocol.h"
#include "HelperKit/PeerScopedHelper.h"
#include "Platform/Linux/service/BusValues.h"
#include "Platform/Linux/service/MethodTable.h"

#include <cstdlib>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace vh;

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// The head of a method call as the bus hands it on, around any signature and any body.
class CallBytes {
public:
    static std::string of(const ServiceIdentity& identity, std::string_view member,
                          std::string_view signature, std::string_view body) {
        CallBytes call;
        call.bytes_ = {'l', 1, 1, 1}; // little-endian, a call, no reply wanted, version
        call.number(static_cast<uint32_t>(body.size()));
        call.number(1);
        call.number(0);
        const size_t begin = call.bytes_.size();
        call.text(1, 'o', identity.path);
        call.text(2, 's', identity.interface);
        call.text(3, 's', member);
        call.signature(signature);
        const auto size = static_cast<uint32_t>(call.bytes_.size() - begin);
        call.bytes_.replace(begin - 4, 4, reinterpret_cast<const char*>(&size), 4);
        call.pad(8);
        return call.bytes_.append(body);
    }

private:
    void pad(size_t to) { bytes_.resize((bytes_.size() + to - 1) / to * to); }
    void number(uint32_t value) { bytes_.append(reinterpret_cast<const char*>(&value), 4); }
    void field(char code, char type) {
        pad(8);
        bytes_.append({code, 1, type, 0});
    }
    void text(char code, char type, std::string_view value) {
        field(code, type);
        number(static_cast<uint32_t>(value.size()));
        bytes_.append(value).push_back(0);
    }
    void signature(std::string_view value) {
        field(8, 'g');
        bytes_.append({static_cast<char>(value.size())}).append(value).push_back(0);
    }

    std::string bytes_;
};

/// What was read is of the kinds that the method names, is bounded, and can be sent on as it is.
void check(const ServiceMethod& method, const ServiceValues& values, sd_bus_message* request) {
    sd_bus_message* copy = nullptr;
    require(sd_bus_message_new_method_call(sd_bus_message_get_bus(request), &copy, nullptr, "/", nullptr,
                                           "M") >= 0);
    require(appendValues(copy, method.arguments, values));
    require(sd_bus_message_seal(copy, 1, 0) >= 0);
    require(readValues(copy, method.arguments) == values);
    sd_bus_message_unref(copy);
    for (const ServiceValue& value : values)
        if (const auto* bytes = std::get_if<ServiceBytes>(&value))
            require(bytes->bytes.size() <= mostServiceBytes);
}

/// The helper on one end of a socket, up to the check before anything is done; any bytes on the other.
class Helper {
public:
    Helper() {
        require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends_) == 0);
        sd_bus* bus = nullptr;
        require(sd_bus_new(&bus) >= 0);
        bus_.reset(bus);
        require(sd_bus_set_fd(bus, ends_[0], ends_[0]) >= 0 && sd_bus_set_server(bus, 1, {}) >= 0 &&
                sd_bus_set_anonymous(bus, 1) >= 0 && sd_bus_start(bus) >= 0);
        table_.emplace(
            bus, identity_, helper::helperMethods,
            [this](const ServiceMethod& method, sd_bus_message* request) { take(method, request); });
        write(std::string_view("\0AUTH ANONYMOUS\r\nBEGIN\r\n", 24));
        turn();
    }
    ~Helper() { ::close(ends_[1]); }

    bool isOpen() const { return sd_bus_is_open(bus_.get()) > 0; }
    void call(std::string_view member, std::string_view signature, std::string_view body) {
        write(CallBytes::of(identity_, member, signature, body));
        turn();
    }

private:
    void write(std::string_view bytes) {
        require(::write(ends_[1], bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    }
    void turn() {
        while (sd_bus_process(bus_.get(), nullptr) > 0) {
        }
        char said[4096];
        while (::read(ends_[1], said, sizeof said) > 0) {
        }
    }
    void take(const ServiceMethod& method, sd_bus_message* request) {
        const auto values = readValues(request, method.arguments);
        if (!values)
            return;
        ::check(method, *values, request);
        for (const uint32_t user : {0u, 65534u})
            handler_.check({method, {.userID = user, .processID = 1, .connection = ":1.1"}, *values});
    }

    int ends_[2]{};
    Bus bus_;
    const ServiceIdentity identity_ = helper::helperIdentity();
    helper::PeerScopedHelper handler_;
    std::optional<MethodTable> table_;
};

} // namespace

/// Whatever a person's process sends is read, or refused, without harm: the first byte is the method, the second the
/// length of another signature than its own, if any.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static std::optional<Helper> helper;
    if (!helper || !helper->isOpen()) {
        helper.reset();
        helper.emplace();
        require(helper->isOpen());
    }
    if (size < 2)
        return 0;
    const ServiceMethod& method = helper::helperMethods[data[0] % helper::helperMethods.size()];
    std::string_view rest(reinterpret_cast<const char*>(data) + 2, size - 2);
    std::string signature = signatureOf(method.arguments);
    if (data[1] != 0) {
        signature = rest.substr(0, data[1]);
        rest.remove_prefix(signature.size());
    }
    helper->call(method.name, signature, rest);
    return 0;
}
