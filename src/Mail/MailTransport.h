#pragma once

#include "Mail/MailSettings.h"
#include "Platform/CancelToken.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

namespace vh::mail {

/// One mail as it goes to the server: every text is ASCII and folded, so that nothing is left to decide.
struct MailTransfer {
    struct Attachment {
        std::string type;        ///< MIME
        std::string disposition; ///< the whole header
        std::string bytes;
    };
    MailSettings settings;
    std::string password;
    std::string caFile; ///< certificates to trust beside the system's; may be empty
    std::chrono::seconds silence{60};
    std::vector<std::string> recipients;
    std::vector<std::string> headers; ///< one each, folded
    std::string body;                 ///< UTF-8, lines ended by CRLF
    std::vector<Attachment> attachments;
};

/// What kept a mail from being sent.
enum class MailFault {
    unreachable, ///< no such server, or it does not take connections
    silent,      ///< said nothing for too long
    lost,        ///< the connection broke
    unconfirmed, ///< it broke, or fell silent, while the mail was under way: whether it was taken is not known
    plain,       ///< the server offers no TLS
    certificate,
    login,
    refused, ///< the server took one of the addresses or the mail itself not
    other
};

class MailError : public std::runtime_error {
public:
    /// `reason`: in the server's or the library's words.
    MailError(MailFault fault, const std::string& reason) : std::runtime_error(reason), fault_(fault) {}
    MailFault fault() const { return fault_; }

private:
    MailFault fault_;
};

/// What the entry of the module "mail" gives.
struct MailModule {
    /// Blocks. Throws MailError, Cancelled.
    void (*send)(const MailTransfer& transfer, const CancelToken& cancel);
};

} // namespace vh::mail
