#pragma once

#include "Mail/MailSettings.h"
#include "app/Background.h"

#include <QObject>
#include <QVariantList>
#include <optional>

namespace vh::app {

class AppContext;
class AutomationLife;

/// The server that sends this program's mail; each setting is stored at once, the password in the secret store, from
/// where it never comes back.
class MailViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString host READ host NOTIFY settingsChanged)
    Q_PROPERTY(QString port READ port NOTIFY settingsChanged)
    /// "starttls" or "tls".
    Q_PROPERTY(QString security READ security NOTIFY settingsChanged)
    Q_PROPERTY(QString user READ user NOTIFY settingsChanged)
    Q_PROPERTY(QString sender READ sender NOTIFY settingsChanged)
    Q_PROPERTY(QString senderName READ senderName NOTIFY settingsChanged)
    Q_PROPERTY(bool isReady READ isReady NOTIFY settingsChanged)
    /// Why the last setting was not stored; empty while all is well.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(bool hasPassword READ hasPassword NOTIFY passwordChanged)
    Q_PROPERTY(QString passwordText READ passwordText NOTIFY passwordChanged)
    Q_PROPERTY(bool isTesting READ isTesting NOTIFY testChanged)
    /// "success" or "failed" with its line; empty before a test has ended.
    Q_PROPERTY(QString testOutcome READ testOutcome NOTIFY testChanged)
    Q_PROPERTY(QString testText READ testText NOTIFY testChanged)
public:
    MailViewModel(AppContext& context, AutomationLife& life);

    QString host() const;
    QString port() const { return QString::number(settings_.port); }
    QString security() const;
    QString user() const;
    QString sender() const;
    QString senderName() const;
    bool isReady() const { return settings_.isReady(); }
    QString message() const { return message_; }
    bool hasPassword() const { return hasPassword_.value_or(false); }
    QString passwordText() const;
    bool isTesting() const { return testing_.isBusy(); }
    QString testOutcome() const { return testOutcome_; }
    QString testText() const { return testText_; }

    /// `field` is a property's name.
    Q_INVOKABLE void set(const QString& field, const QString& value);
    /// An empty one is taken out of the store.
    Q_INVOKABLE void setPassword(const QString& password);
    /// Asks the store whether it has a password; it may want to be unlocked first.
    Q_INVOKABLE void askForPassword();
    Q_INVOKABLE void sendTest(const QString& recipient);
    Q_INVOKABLE void stopTest();

signals:
    void settingsChanged();
    void messageChanged();
    void passwordChanged();
    void testChanged();

private:
    void say(const QString& message);

    AppContext& context_;
    AutomationLife& life_;
    mail::MailSettings settings_;
    QString message_;
    std::optional<bool> hasPassword_; ///< nothing until the store answered
    QString passwordFault_;
    QString testOutcome_;
    QString testText_;
    Background asking_;
    Background testing_;
};

} // namespace vh::app
