#pragma once

#include "HelperKit/HelperProtocol.h"
#include "Platform/ServiceLink.h"
#include "support/AsUser.h"
#include "support/BackgroundProgram.h"
#include "support/BusService.h"
#include "support/TempDir.h"
#include "support/WaitUntil.h"

#include <future>
#include <memory>
#include <string>
#include <vector>

namespace vh::test {

/// A folder that stands for "/", where the helper's program installs itself.
class HelperRoot {
public:
    HelperRoot();
    const std::string& path() const { return folder_.path(); }
    std::string operator/(std::string_view name) const { return folder_ / name; }

    /// Runs the helper's program with a word and "--root"; its errors when it fails.
    std::string run(const std::string& verb) const;
    /// Every file below, with its mode and its bytes in one text.
    std::vector<std::string> files() const;

private:
    TempDir folder_;
};

/// A system with the helper installed: a bus that starts it when it is called, and a polkit that a test speaks for.
class HelperSystem {
public:
    /// Who calls: a user without rights.
    static constexpr unsigned user = AsUser::user;

    /// The helper ends when nobody has called it for so long.
    explicit HelperSystem(std::chrono::seconds idleLimit = std::chrono::minutes(10));
    ~HelperSystem();
    HelperSystem(const HelperSystem&) = delete;
    HelperSystem& operator=(const HelperSystem&) = delete;

    BusService& polkit() { return polkit_; }
    void allow(bool yes);
    /// Which actions polkit was asked about.
    std::vector<std::string> questions() const;

    /// A connection of that user.
    std::shared_ptr<ServiceLink> link() const;
    /// The process that answers as the helper; -1 when there is none.
    int helper() const;
    /// What happens when that user asks for the helper's name.
    std::string errorOfOwning() const;
    void stopBus() { bus_.stop(); }

private:
    std::string before_;
    HelperRoot root_;
    BackgroundProgram bus_;
    BusService polkit_;
};

using Ending = std::future<ServiceReply>;
/// A link that goes away ends a call with the code "lost".
Ending start(ServiceLink& link, const ServiceMethod& method, const ServiceValues& arguments);
/// The values as text, or the words of the refusal. Waits for it.
std::string answerOf(Ending ending);
std::string answerOf(ServiceLink& link, const ServiceMethod& method, const ServiceValues& arguments);

} // namespace vh::test
