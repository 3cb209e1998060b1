#include "Core/MailAddress.h"
#include "Core/Printable.h"
#include "Mail/MailSender.h"
#include "Platform/Host.h"
#include "Platform/SecretStore.h"
#include "Platform/Terminal.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"

#include <cstdio>

namespace vh {

namespace cli {

/// The mail server as it is set up.
struct MailReply {
    mail::MailSettings settings;
    bool isReady = false;
    bool hasPassword = false;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::MailReply> = record(field("settings", &cli::MailReply::settings),
                                                        field("ready", &cli::MailReply::isReady),
                                                        field("passwordStored",
                                                              &cli::MailReply::hasPassword));

} // namespace vh

namespace vh::cli {

namespace {

using mail::MailSettings;

/// What the words of `mail set` say; what they leave out stays as it is.
struct SetOptions {
    std::optional<std::string> host, security, user, sender, senderName;
    std::optional<int> port;
    bool passwordFromInput = false;
};

int usualPort(mail::MailSecurity security) {
    return security == mail::MailSecurity::tls ? 465 : 587;
}

MailReply readMail(Context& context, SecretStore& secrets) {
    const MailSettings settings = MailSettings::load(context.session.defaults());
    return {settings, settings.isReady(), !settings.user.empty() && secrets.get(mail::passwordName)};
}

Exit showMail(Context& context) {
    OwnLoop own(context.session);
    const MailReply reply = readMail(context, own.automation().secrets());
    if (context.format == Format::json) {
        printJson(reply);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    const MailSettings& settings = reply.settings;
    if (settings.host.empty()) {
        print(texts.text("cli.mail.none") + "\n");
        return Exit::done;
    }
    const std::string sender = settings.senderName.empty()
                                   ? settings.sender
                                   : fmt::format("{} <{}>", settings.senderName, settings.sender);
    print(fmt::format("{}: {}:{} ({})\n{}: {}\n", texts.text("cli.mail.label.host"), printable(settings.host),
                      settings.port, rawValue(settings.security), texts.text("cli.mail.label.sender"),
                      printable(sender)));
    if (!settings.user.empty())
        print(
            fmt::format("{}: {} ({})\n", texts.text("cli.mail.label.user"), printable(settings.user),
                        texts.text(reply.hasPassword ? "cli.mail.password.kept" : "cli.mail.password.none")));
    return Exit::done;
}

/// The settings with what was said put in. Throws UsageError.
MailSettings changed(MailSettings settings, const SetOptions& options, const Texts& texts) {
    if (options.security) {
        settings.security = *fromRaw<mail::MailSecurity>(*options.security);
        settings.port = usualPort(settings.security);
    }
    settings.host = options.host.value_or(settings.host);
    settings.port = options.port.value_or(settings.port);
    settings.user = options.user.value_or(settings.user);
    settings.sender = options.sender.value_or(settings.sender);
    settings.senderName = options.senderName.value_or(settings.senderName);
    if (!settings.sender.empty() && !MailAddress::isValid(settings.sender))
        throw UsageError(texts.text("cli.mail.bad-address", {{"address", printable(settings.sender)}}));
    if (printable(settings.host) != settings.host ||
        settings.host.find_first_of(" /@?#") != std::string::npos)
        throw UsageError(texts.text("cli.mail.bad-host", {{"host", printable(settings.host)}}));
    return settings;
}

/// From standard input, unseen when a person types it. Throws UsageError when there is none.
std::string askPassword(const Texts& texts) {
    const bool isTyped = isTerminal(StandardStream::input);
    if (isTyped)
        std::fprintf(stderr, "%s ", texts.text("cli.mail.ask-password").c_str());
    const auto password = readHiddenLine();
    if (isTyped)
        std::fprintf(stderr, "\n");
    if (!password || password->empty())
        throw UsageError(texts.text("cli.mail.no-password"));
    return *password;
}

Exit setMail(Context& context, const SetOptions& options) {
    const Texts& texts = context.session.texts();
    UserDefaults& defaults = context.session.defaults();
    const MailSettings before = MailSettings::load(defaults);
    const MailSettings settings = changed(before, options, texts);
    const bool isNewUser = !settings.user.empty() && settings.user != before.user;
    const bool asks = options.passwordFromInput || (isNewUser && isTerminal(StandardStream::input));
    if (asks) {
        const std::string password = askPassword(texts);
        OwnLoop own(context.session);
        own.automation().secrets().set(mail::passwordName, texts.text("mail.password.title"), password);
    }
    settings.store(defaults);
    return showMail(context);
}

Exit clearMail(Context& context) {
    OwnLoop own(context.session);
    own.automation().secrets().remove(mail::passwordName);
    MailSettings().store(context.session.defaults());
    return showMail(context);
}

Exit testMail(Context& context, const std::string& word) {
    const Texts& texts = context.session.texts();
    const std::string sender = MailSettings::load(context.session.defaults()).sender;
    const mail::MailMessage message{
        .recipients = {word.empty() ? sender : word},
        .subject = texts.text("mail.test.subject"),
        .body = texts.text("mail.test.body", {{"computer", printable(hostName())}}) + "\n"};
    OwnLoop own(context.session);
    const RunRecord record = own.automation().mail().send(message, Trigger::manual, context.cancel);
    if (context.format == Format::json)
        printJson(record);
    else if (record.outcome == Outcome::success)
        print(printable(record.summary) + "\n");
    else
        complain(printable(record.summary));
    return exitOf(record.outcome);
}

void describeSet(Verb& noun, CommandLine& line) {
    auto options = std::make_shared<SetOptions>();
    Verb& set = noun.verb("set", line.text("cli.mail.set"));
    set.option("--host", &options->host, line.text("cli.mail.host")).valueName("HOST");
    set.option("--port", &options->port, line.text("cli.mail.port")).valueName("N").range(1, 65535);
    set.option("--security", &options->security, line.text("cli.mail.security")).oneOf({"starttls", "tls"});
    set.option("--user", &options->user, line.text("cli.mail.user")).valueName("USER");
    set.option("--sender", &options->sender, line.text("cli.mail.sender")).valueName("ADDRESS");
    set.option("--sender-name", &options->senderName, line.text("cli.mail.sender-name")).valueName("NAME");
    set.option("--password-stdin", &options->passwordFromInput, line.text("cli.mail.password-stdin"));
    line.onChange(set, [options](Context& context) { return setMail(context, *options); });
}

} // namespace

void describeMail(Verb& noun, CommandLine& line) {
    line.on(noun.verb("show", line.text("cli.mail.show")), showMail);
    describeSet(noun, line);
    auto address = std::make_shared<std::string>();
    Verb& test = noun.verb("test", line.text("cli.mail.test"));
    test.argument("ADDRESS", address.get(), line.text("cli.mail.test.address"));
    line.onChange(test, [address](Context& context) { return testMail(context, *address); });
    line.onChange(noun.verb("clear", line.text("cli.mail.clear")), clearMail);
}

} // namespace vh::cli
