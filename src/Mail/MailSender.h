#pragma once

#include "Core/RunRecord.h"
#include "Mail/MailSettings.h"
#include "Platform/CancelToken.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace vh {
class RunLog;
class SecretStore;
class Texts;
class UserDefaults;
} // namespace vh

namespace vh::mail {

struct MailAttachment {
    std::string name;
    std::string type; ///< MIME, such as "text/csv"
    std::string bytes;
};

struct MailMessage {
    std::vector<std::string> recipients;
    std::string subject; ///< UTF-8, one line
    std::string body;    ///< UTF-8
    std::vector<MailAttachment> attachments;
};

/// Sends mail by SMTP with the person's settings. Any thread.
class MailSender {
public:
    MailSender(UserDefaults& defaults, SecretStore& secrets, RunLog& log, std::function<Texts()> texts,
               std::chrono::seconds silence = std::chrono::minutes(1))
        : defaults_(defaults), secrets_(secrets), log_(log), texts_(std::move(texts)), silence_(silence) {}

    bool isReady() const;
    /// Blocks until the server took the message or did not. Leaves a run record of the tool "send-email", which it
    /// gives: its summary says to whom, or what went wrong and that nothing was sent. A server that says nothing for a
    /// minute has failed. A server whose certificate the system does not know needs the setting "mail.ca-file".
    RunRecord send(const MailMessage& message, Trigger trigger, const CancelToken& cancel = {},
                   const RunDetails& details = {}) const;

private:
    void deliver(const MailMessage& message, const MailSettings& settings, const CancelToken& cancel) const;

    UserDefaults& defaults_;
    SecretStore& secrets_;
    RunLog& log_;
    std::function<Texts()> texts_;
    std::chrono::seconds silence_;
};

} // namespace vh::mail
