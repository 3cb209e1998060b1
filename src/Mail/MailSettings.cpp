#include "Mail/MailSettings.h"

#include "Core/MailAddress.h"
#include "Core/UserDefaults.h"

namespace vh::mail {

namespace {
constexpr std::string_view settingKey = "mail.server";
} // namespace

bool MailSettings::isReady() const {
    return !host.empty() && port > 0 && port < 65536 && MailAddress::isValid(sender);
}

MailSettings MailSettings::load(const UserDefaults& defaults) {
    return defaults.get<MailSettings>(settingKey).value_or(MailSettings());
}

void MailSettings::store(UserDefaults& defaults) const {
    defaults.set(settingKey, *this);
}

} // namespace vh::mail
