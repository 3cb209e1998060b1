#include "Features/FollowUps/view/MailViewModel.h"

#include "Automation/Automation.h"
#include "Core/MailAddress.h"
#include "Core/Printable.h"
#include "Mail/MailSender.h"
#include "Platform/Host.h"
#include "Platform/SecretStore.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/Session.h"

namespace vh::app {

namespace {

constexpr int highestPort = 65535;

int usualPort(mail::MailSecurity security) {
    return security == mail::MailSecurity::tls ? 465 : 587;
}

/// Puts one field in; the key of what is wrong with the value, nothing when all is well.
const char* put(mail::MailSettings& settings, const QString& field, const QString& text) {
    const std::string value = text.trimmed().toStdString();
    if (field == QLatin1String("port")) {
        bool isNumber = false;
        const int port = text.trimmed().toInt(&isNumber);
        if (!isNumber || port < 1 || port > highestPort)
            return "mail-page.fault.port";
        settings.port = port;
    } else if (field == QLatin1String("security")) {
        const int before = usualPort(settings.security);
        settings.security = fromRaw<mail::MailSecurity>(value).value_or(settings.security);
        if (settings.port == before)
            settings.port = usualPort(settings.security);
    } else if (field == QLatin1String("sender")) {
        if (!value.empty() && !MailAddress::isValid(value))
            return "mail.bad-address";
        settings.sender = value;
    } else if (field == QLatin1String("host")) {
        settings.host = value;
    } else if (field == QLatin1String("user")) {
        settings.user = value;
    } else if (field == QLatin1String("senderName")) {
        settings.senderName = value;
    }
    return nullptr;
}

} // namespace

MailViewModel::MailViewModel(AppContext& context, AutomationLife& life)
    : context_(context), life_(life), settings_(mail::MailSettings::load(context.session().defaults())) {
    connect(&context_.texts(), &AppTexts::changed, this, &MailViewModel::passwordChanged);
}

QString MailViewModel::host() const {
    return qtText(printable(settings_.host));
}

QString MailViewModel::security() const {
    return qtText(rawValue(settings_.security));
}

QString MailViewModel::user() const {
    return qtText(printable(settings_.user));
}

QString MailViewModel::sender() const {
    return qtText(printable(settings_.sender));
}

QString MailViewModel::senderName() const {
    return qtText(printable(settings_.senderName));
}

QString MailViewModel::passwordText() const {
    if (!passwordFault_.isEmpty())
        return passwordFault_;
    if (!hasPassword_)
        return context_.texts().text("mail-page.password.asking");
    return context_.texts().text(*hasPassword_ ? "mail-page.password.kept" : "mail-page.password.none");
}

void MailViewModel::set(const QString& field, const QString& value) {
    mail::MailSettings changed = mail::MailSettings::load(context_.session().defaults());
    if (const char* fault = put(changed, field, value)) {
        emit settingsChanged(); // the field shows what is stored again
        return say(context_.texts().text(fault, {{"address", printable(value.toStdString())}}));
    }
    try {
        if (changed != settings_)
            changed.store(context_.session().defaults());
        settings_ = changed;
        say({});
    } catch (const std::exception& error) {
        say(context_.texts().errorText(error));
    }
    emit settingsChanged();
}

void MailViewModel::askForPassword() {
    asking_.run([&secrets = life_.automation().secrets()](
                    const Background::Task&) { return secrets.get(mail::passwordName).has_value(); },
                [this](std::future<bool> answer) {
                    passwordFault_.clear();
                    try {
                        hasPassword_ = answer.get();
                    } catch (const std::exception& error) {
                        passwordFault_ = context_.texts().errorText(error);
                    }
                    emit passwordChanged();
                });
}

void MailViewModel::setPassword(const QString& password) {
    const std::string title = context_.texts().text("mail.password.title").toStdString();
    asking_.run(
        [&secrets = life_.automation().secrets(), title,
         secret = password.toStdString()](const Background::Task&) {
            if (secret.empty())
                secrets.remove(mail::passwordName);
            else
                secrets.set(mail::passwordName, title, secret);
            return !secret.empty();
        },
        [this](std::future<bool> stored) {
            passwordFault_.clear();
            try {
                hasPassword_ = stored.get();
            } catch (const std::exception& error) {
                passwordFault_ = context_.texts().errorText(error);
            }
            emit passwordChanged();
        });
}

void MailViewModel::sendTest(const QString& recipient) {
    const std::string to = recipient.trimmed().toStdString();
    testOutcome_.clear();
    testText_.clear();
    if (!MailAddress::isValid(to)) {
        testOutcome_ = QStringLiteral("failed");
        testText_ = context_.texts().text("mail.bad-address", {{"address", printable(to)}});
        emit testChanged();
        return;
    }
    const AppTexts& texts = context_.texts();
    const mail::MailMessage message{
        .recipients = {to},
        .subject = texts.text("mail.test.subject").toStdString(),
        .body = texts.text("mail.test.body", {{"computer", printable(hostName())}}).toStdString()};
    testing_.run(
        [&sender = life_.automation().mail(), message](const Background::Task& task) {
            return sender.send(message, Trigger::manual, task.cancel);
        },
        [this](std::future<RunRecord> record) {
            try {
                const RunRecord run = record.get();
                testOutcome_ = qtText(rawValue(run.outcome));
                testText_ = qtText(printable(run.summary));
            } catch (const std::exception& error) {
                testOutcome_ = QStringLiteral("failed");
                testText_ = context_.texts().errorText(error);
            }
            emit testChanged();
        });
    emit testChanged();
}

void MailViewModel::stopTest() {
    testing_.cancel();
}

void MailViewModel::say(const QString& message) {
    if (message == message_)
        return;
    message_ = message;
    emit messageChanged();
}

} // namespace vh::app
