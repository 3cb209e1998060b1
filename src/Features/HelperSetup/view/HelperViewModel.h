#pragma once

#include "Platform/ServiceRegistration.h"
#include "app/Background.h"

#include <QObject>
#include <QVariantList>
#include <optional>
#include <string>

namespace vh {
class Texts;
}
namespace vh::helper {
class HelperClient;
}

namespace vh::app {

class AppContext;

/// How far the root helper is set up, and what can be done about it. Nothing is read before it is asked for.
class HelperViewModel : public QObject {
    Q_OBJECT
    /// A HelperRegistrationStatus by its name; of an enabled one "working", "old" where one of an older build is left, or
    /// "silent". Empty before it was looked at.
    Q_PROPERTY(QString stage READ stage NOTIFY changed)
    /// What is under way: "look", "setUp", "repair" or "remove"; else empty.
    Q_PROPERTY(QString act READ act NOTIFY changed)
    /// Whether the acts ask for a password.
    Q_PROPERTY(bool asks READ asks NOTIFY changed)
    /// Why the last act did not come to its end.
    Q_PROPERTY(QString failure READ failure NOTIFY changed)
    /// Why it is silent.
    Q_PROPERTY(QString silence READ silence NOTIFY changed)
    /// `label` and `value` of what is known of a helper that answers.
    Q_PROPERTY(QVariantList facts READ facts NOTIFY changed)
    /// A MaintenanceSystem by its name: this one.
    Q_PROPERTY(QString system READ system CONSTANT)
public:
    HelperViewModel(AppContext& context, helper::HelperClient& client);

    QString stage() const;
    QString act() const;
    bool asks() const { return seen_ && seen_->asks; }
    QString failure() const;
    QString silence() const;
    QVariantList facts() const;
    QString system() const;

    /// Asks the system, and the helper if there is one. All of these do nothing while something is under way.
    Q_INVOKABLE void look() { perform(Act::look); }
    /// Also replaces a helper that is there.
    Q_INVOKABLE void setUp() { perform(Act::setUp); }
    Q_INVOKABLE void repair() { perform(Act::repair); }
    Q_INVOKABLE void remove() { perform(Act::remove); }

signals:
    void changed();

private:
    enum class Act { look, setUp, repair, remove };
    struct Seen {
        HelperRegistrationStatus status = HelperRegistrationStatus::unknown;
        bool asks = false;
        std::optional<std::string> build; ///< that set it up
        bool isOld = false;
        std::string failure;
        std::string answer; ///< to a ping
        std::string silence;
        double seconds = 0; ///< until it came
    };
    static Seen done(helper::HelperClient& client, Act act, const Texts& texts);
    static void ping(helper::HelperClient& client, Seen& seen, const Texts& texts);
    void perform(Act act);

    AppContext& context_;
    helper::HelperClient& client_;
    std::optional<Act> act_;
    std::optional<Seen> seen_;
    Background working_;
};

} // namespace vh::app
