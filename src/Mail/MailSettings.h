#pragma once

#include "Core/Describe.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vh {
class UserDefaults;
}

namespace vh::mail {

enum class MailSecurity {
    starttls, ///< plain at first, then TLS; never on without it
    tls       ///< from the first byte
};

/// The server that sends this program's mail. The password is in the secret store, never here.
struct MailSettings {
    std::string host;
    int port = 587;
    MailSecurity security = MailSecurity::starttls;
    std::string user;       ///< empty: the server asks for none
    std::string sender;     ///< address
    std::string senderName; ///< may be empty

    /// Whether mail can be sent with them.
    bool isReady() const;
    bool operator==(const MailSettings&) const = default;

    /// From the setting "mail.server"; empty ones when there are none.
    static MailSettings load(const UserDefaults& defaults);
    /// Throws SystemError.
    void store(UserDefaults& defaults) const;
};

/// The password's name in the secret store.
inline constexpr const char* passwordName = "mail.password";

} // namespace vh::mail

namespace vh {
template <>
inline constexpr auto describe<mail::MailSecurity> = enumeration<mail::MailSecurity>(
    {{mail::MailSecurity::starttls, "starttls"}, {mail::MailSecurity::tls, "tls"}});
template <>
inline constexpr auto describe<mail::MailSettings> =
    record(field("host", &mail::MailSettings::host).mayBeMissing(),
           field("port", &mail::MailSettings::port).mayBeMissing(),
           field("security", &mail::MailSettings::security).forgiving(),
           field("user", &mail::MailSettings::user).mayBeMissing(),
           field("sender", &mail::MailSettings::sender).mayBeMissing(),
           field("senderName", &mail::MailSettings::senderName).mayBeMissing());
} // namespace vh
