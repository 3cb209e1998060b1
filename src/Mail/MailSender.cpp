#include "Mail/MailSender.h"

#include "Core/ErrorMessage.h"
#include "Core/MailAddress.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "Mail/MailHeaders.h"
#include "Mail/MailTransport.h"
#include "Platform/BrokenPipeGuard.h"
#include "Platform/Module.h"
#include "Platform/SecretStore.h"

#include <fmt/format.h>

namespace vh::mail {

namespace {

constexpr std::string_view caFileKey = "mail.ca-file";
constexpr const char* toolID = "send-email";

/// What is wrong with a mail before any server is asked.
class Unsendable : public std::runtime_error, public SpeakingError {
public:
    explicit Unsendable(Message why) : std::runtime_error(why.key), why_(std::move(why)) {}
    Message message() const override { return why_; }

private:
    Message why_;
};

/// "Sun, 22 Nov 2026 23:30:05 +0000" (RFC 5322), whatever the locale.
std::string mailDate(Date date) {
    static constexpr const char* days[]{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char* months[]{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto day = std::chrono::floor<std::chrono::days>(date);
    const std::chrono::year_month_day ymd(day);
    const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(date - day));
    return fmt::format("{}, {:02} {} {} {:02}:{:02}:{:02} +0000",
                       days[std::chrono::weekday(day).c_encoding()], unsigned(ymd.day()),
                       months[unsigned(ymd.month()) - 1], int(ymd.year()), time.hours().count(),
                       time.minutes().count(), time.seconds().count());
}

void checkMessage(const MailMessage& message, const MailSettings& settings) {
    if (!settings.isReady())
        throw Unsendable({"mail.not-ready", {}});
    if (message.recipients.empty())
        throw Unsendable({"mail.no-recipient", {}});
    for (const std::string& each : message.recipients)
        if (!MailAddress::isValid(each) || breaksHeader(each))
            throw Unsendable({"mail.bad-address", {{"address", printable(each)}}});
    bool breaks = breaksHeader(message.subject) || breaksHeader(settings.senderName);
    for (const auto& attachment : message.attachments)
        breaks = breaks || breaksHeader(attachment.name) || breaksHeader(attachment.type);
    if (breaks)
        throw Unsendable({"mail.line-break", {}});
}

std::vector<std::string> headersOf(const MailMessage& message, const MailSettings& settings, Date now) {
    const std::string domain = settings.sender.substr(settings.sender.rfind('@') + 1);
    return {"Date: " + mailDate(now),
            "From: " + mailbox(settings.senderName, settings.sender),
            "To: " + addressList(message.recipients),
            "Subject: " + headerText(message.subject),
            fmt::format("Message-ID: <{}@{}>", Uuid::random().text(), domain),
            "Auto-Submitted: auto-generated"};
}

Message faultMessage(const MailError& error, const MailSettings& settings) {
    static constexpr std::pair<MailFault, const char*> keys[]{
        {MailFault::unreachable, "mail.fault.unreachable"},
        {MailFault::silent, "mail.fault.silent"},
        {MailFault::lost, "mail.fault.lost"},
        {MailFault::plain, "mail.fault.plain"},
        {MailFault::certificate, "mail.fault.certificate"},
        {MailFault::login, "mail.fault.login"},
        {MailFault::refused, "mail.fault.refused"},
        {MailFault::other, "mail.fault.other"}};
    const std::map<std::string, MessageArgument> arguments{{"host", settings.host},
                                                           {"reason", printable(error.what())}};
    if (error.fault() == MailFault::unconfirmed)
        return {"mail.unconfirmed", arguments};
    const auto* key = std::ranges::find(keys, error.fault(), &std::pair<MailFault, const char*>::first);
    return {"mail.not-sent", {{"reason", Message{key->second, arguments}}}};
}

} // namespace

bool MailSender::isReady() const {
    return MailSettings::load(defaults_).isReady();
}

RunRecord MailSender::send(const MailMessage& message, Trigger trigger, const CancelToken& cancel,
                           const RunDetails& details) const {
    const auto run = log_.begin(toolID, trigger, details);
    const auto finish = [&](Outcome outcome, Message said, const RunMetrics& metrics = {}) {
        return run->finish(outcome, RunWords({std::move(said)}, texts_()), metrics);
    };
    const MailSettings settings = MailSettings::load(defaults_);
    try {
        deliver(message, settings, cancel);
        return finish(Outcome::success,
                      {"mail.sent", {{"recipients", fmt::format("{}", fmt::join(message.recipients, ", "))}}},
                      {{RunMetric::itemsProcessed, double(message.recipients.size())}});
    } catch (const Cancelled&) {
        return finish(Outcome::cancelled, {"mail.cancelled", {}});
    } catch (const MailError& error) {
        return finish(Outcome::failed, faultMessage(error, settings));
    } catch (const std::exception& error) {
        return finish(Outcome::failed, {"mail.not-sent", {{"reason", messageOf(error)}}});
    }
}

void MailSender::deliver(const MailMessage& message, const MailSettings& settings,
                         const CancelToken& cancel) const {
    checkMessage(message, settings);
    MailTransfer transfer{.settings = settings,
                          .caFile = defaults_.get<std::string>(caFileKey).value_or(""),
                          .silence = silence_,
                          .recipients = message.recipients,
                          .headers = headersOf(message, settings, log_.now()),
                          .body = withMailLineEnds(message.body)};
    if (!settings.user.empty()) {
        const auto password = secrets_.get(passwordName);
        if (!password)
            throw Unsendable({"mail.no-password", {{"user", settings.user}}});
        transfer.password = *password;
    }
    for (const auto& [name, type, bytes] : message.attachments)
        transfer.attachments.push_back({type, attachmentDisposition(name), bytes});
    cancel.throwIfCancelled();
    // The library writes to sockets that the server may have closed.
    const BrokenPipeGuard guard;
    static_cast<MailModule*>(openModule("mail"))->send(transfer, cancel);
}

} // namespace vh::mail
