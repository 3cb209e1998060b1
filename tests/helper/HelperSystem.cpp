#include "helper/HelperSystem.h"

#include "Platform/Files.h"
#include "Platform/Linux/modules/BusCalls.h"
#include "Platform/Process.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <regex>
#include <unistd.h>

namespace vh::test {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr auto limit = 60s;
constexpr const char* busVariable = "DBUS_SYSTEM_BUS_ADDRESS";
const std::string question = "org.freedesktop.PolicyKit1.Authority.CheckAuthorization";
const std::string name(helper::identity::machServiceName);

/// Installs the helper, with an idle limit, and gives the words that start a bus like a real system's: nobody may own a
/// name or call a method but where the rules of a service say so.
std::vector<std::string> busCommand(const HelperRoot& root, std::chrono::seconds idleLimit) {
    EXPECT_EQ(root.run("install"), "");
    const std::string services = root / "usr/local/share/dbus-1/system-services";
    const std::string file = services + "/" + name + ".service";
    const std::string installed = root.path() + "$1 --idle " + std::to_string(idleLimit.count());
    writeFileAtomically(file,
                        std::regex_replace(readFile(file), std::regex("Exec=(.*)"), "Exec=" + installed));
    const std::string configuration = root / "bus.conf";
    writeFileAtomically(configuration, fmt::format(R"(<busconfig>
  <type>system</type>
  <listen>unix:path={0}/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{1}</servicedir>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus"/>
  </policy>
  <policy user="root">
    <allow own="org.freedesktop.PolicyKit1"/>
    <allow send_destination="org.freedesktop.PolicyKit1"/>
  </policy>
  <includedir>{0}/etc/dbus-1/system.d</includedir>
</busconfig>
)",
                                                   root.path(), services));
    return {"dbus-daemon", "--config-file=" + configuration, "--nofork", "--print-address"};
}

/// Asks the bus about the helper's name.
BusAnswer askBus(const char* member, const std::vector<uint32_t>& flags = {}) {
    const Bus bus = connectBus(BusKind::system, 10s);
    const BusMessage message =
        newCall(bus.get(), {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", member},
                BusStart::never);
    sd_bus_message_append(message.get(), "s", name.c_str());
    for (const uint32_t flag : flags)
        sd_bus_message_append(message.get(), "u", flag);
    return call(bus.get(), message, 10s);
}

} // namespace

HelperRoot::HelperRoot() {
    fs::permissions(path(), fs::perms(0755));
}

std::string HelperRoot::run(const std::string& verb) const {
    const ProcessResult result = runProcess({{VH_HELPER, verb, "--root", path()}});
    return result.succeeded() ? "" : result.errors;
}

std::vector<std::string> HelperRoot::files() const {
    std::vector<std::string> found;
    for (const auto& each : fs::recursive_directory_iterator(path()))
        if (!each.is_directory())
            found.push_back(fmt::format("{} {:o}\n{}", each.path().string().substr(path().size()),
                                        unsigned(each.symlink_status().permissions()),
                                        readFile(each.path())));
    std::ranges::sort(found);
    return found;
}

HelperSystem::HelperSystem(std::chrono::seconds idleLimit)
    : before_(std::getenv(busVariable) != nullptr ? std::getenv(busVariable) : ""),
      bus_(busCommand(root_, idleLimit)),
      polkit_(bus_.firstLine(), "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority") {
    ::setenv(busVariable, bus_.firstLine().c_str(), 1);
}

HelperSystem::~HelperSystem() {
    const int last = helper();
    bus_.stop();
    if (last > 0)
        waitUntil("the helper ends with its bus", [&] { return !isAlive(last); });
    before_.empty() ? ::unsetenv(busVariable) : ::setenv(busVariable, before_.c_str(), 1);
}

void HelperSystem::allow(bool yes) {
    polkit_.setReply(question, BusService::Verdict{yes});
}

std::vector<std::string> HelperSystem::questions() const {
    std::vector<std::string> actions;
    for (const BusService::Call& call : polkit_.calls())
        for (const std::string& text : call.texts)
            if (call.method == question && text.starts_with(name))
                actions.push_back(text.substr(name.size() + 1));
    return actions;
}

std::shared_ptr<ServiceLink> HelperSystem::link() const {
    const AsUser caller;
    return openServiceLink(helper::helperIdentity());
}

int HelperSystem::helper() const {
    try {
        return int(valueOf<uint32_t>(askBus("GetConnectionUnixProcessID"), 'u').value_or(uint32_t(-1)));
    } catch (const std::runtime_error&) {
        return -1;
    }
}

std::string HelperSystem::errorOfOwning() const {
    const AsUser caller;
    return askBus("RequestName", {0}).reason;
}

Ending start(ServiceLink& link, const ServiceMethod& method, const ServiceValues& arguments) {
    auto end = std::make_shared<std::promise<ServiceReply>>();
    link.call(method, arguments,
              {[end](ServiceReply reply) { end->set_value(std::move(reply)); },
               [end](const std::string& why) {
                   end->set_value(ServiceRefusal{"lost", "lost: " + why});
               }});
    return end->get_future();
}

std::string answerOf(Ending ending) {
    if (ending.wait_for(limit) != std::future_status::ready)
        return "no answer";
    const ServiceReply reply = ending.get();
    if (const auto* refusal = std::get_if<ServiceRefusal>(&reply))
        return refusal->text;
    std::string text;
    for (const ServiceValue& value : std::get<ServiceValues>(reply)) {
        text += text.empty() ? "" : " ";
        if (const auto* truth = std::get_if<bool>(&value))
            text += *truth ? "yes" : "no";
        else if (const auto* number = std::get_if<int64_t>(&value))
            text += std::to_string(*number);
        else if (const auto* words = std::get_if<std::string>(&value))
            text += *words;
        else
            text += std::get<ServiceBytes>(value).bytes;
    }
    return text;
}

std::string answerOf(ServiceLink& link, const ServiceMethod& method, const ServiceValues& arguments) {
    return answerOf(start(link, method, arguments));
}

} // namespace vh::test
