#include "Core/Printable.h"
#include "HelperKit/HelperClient.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Consent.h"
#include "cli/Reply.h"

#include <fmt/format.h>

namespace vh {

namespace cli {

/// How far the root helper is set up.
struct HelperReply {
    HelperRegistrationStatus status = HelperRegistrationStatus::unknown;
    std::optional<std::string> registeredBuild;
    std::string build; ///< of this program
};

struct PingReply {
    std::string answer;
    double milliseconds = 0;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::HelperReply> = record(field("status", &cli::HelperReply::status),
                                                          field("registeredBuild",
                                                                &cli::HelperReply::registeredBuild),
                                                          field("build", &cli::HelperReply::build));

template <>
inline constexpr auto describe<cli::PingReply> = record(field("answer", &cli::PingReply::answer),
                                                        field("milliseconds", &cli::PingReply::milliseconds));

} // namespace vh

namespace vh::cli {

namespace {

using Status = HelperRegistrationStatus;

/// What to do about a helper that is not there.
std::string nextStep(Status status, const Texts& texts) {
    if (status == Status::notRegistered)
        return texts.text("cli.helper.next.register");
    if (status == Status::requiresApproval)
        return texts.text(
            fmt::format("helper-setup.detail.requiresApproval.{}", rawValue(helper::thisSystem())));
    return texts.text(fmt::format("helper-setup.detail.{}", rawValue(status)));
}

/// Done when there is a helper of this build, with warnings when it is of another.
Exit showStatus(Context& context) {
    helper::HelperClient& client = context.session.helper();
    const HelperReply reply{client.refreshStatus(), client.registeredBuild(), VH_VERSION};
    const bool isThere = reply.status == Status::enabled;
    const bool isOld = isThere && reply.registeredBuild.value_or(reply.build) != reply.build;
    const Exit exit = isOld ? Exit::warnings : isThere ? Exit::done : Exit::failed;
    if (context.format == Format::json) {
        printJson(reply);
        return exit;
    }
    const Texts& texts = context.session.texts();
    print(texts.text(fmt::format("helper-setup.stage.{}", rawValue(reply.status))) + "\n");
    if (isOld)
        print(texts.text("cli.helper.next.old", {{"build", printable(*reply.registeredBuild)}}) + "\n");
    else if (!isThere)
        print(nextStep(reply.status, texts) + "\n");
    return exit;
}

/// Nobody is asked for what is not there.
Exit unregister(Context& context) {
    const Status status = context.session.helper().refreshStatus();
    if (status == Status::notRegistered || status == Status::notFound) {
        showStatus(context);
        return Exit::done;
    }
    const std::string question = context.session.texts().text("cli.helper.ask-remove");
    if (const auto refusal = unlessAgreed(context, question))
        return *refusal;
    context.session.helper().unregisterHelper();
    showStatus(context);
    return Exit::done;
}

Exit ping(Context& context) {
    const auto start = std::chrono::steady_clock::now();
    PingReply reply{.answer = context.session.helper().pingOrThrow()};
    reply.milliseconds =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    if (context.format == Format::json)
        printJson(reply);
    else
        print(fmt::format("{} ({:.1f} ms)\n", printable(reply.answer), reply.milliseconds));
    return Exit::done;
}

} // namespace

void describeHelper(Verb& noun, CommandLine& line) {
    line.on(noun.verb("status", line.text("cli.helper.status")), showStatus);
    line.onChange(noun.verb("register", line.text("cli.helper.register")), [](Context& context) {
        context.session.helper().registerHelper();
        return showStatus(context);
    });
    line.onChange(noun.verb("unregister", line.text("cli.helper.unregister")), unregister);
    line.onChange(noun.verb("repair", line.text("cli.helper.repair")), [](Context& context) {
        context.session.helper().repair();
        return showStatus(context);
    });
    line.on(noun.verb("ping", line.text("cli.helper.ping")), ping);
}

} // namespace vh::cli
