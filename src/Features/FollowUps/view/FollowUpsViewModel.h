#pragma once

#include <QObject>
#include <QVariantList>
#include <memory>

namespace vh::automation {
class RunFollowUps;
}

namespace vh::app {

class AppContext;
class AutomationLife;

/// What the person wants after each run of a tool, beside the tool and in the settings.
class FollowUpsViewModel : public QObject {
    Q_OBJECT
    /// {id, name, icon, line} of the tools that can run.
    Q_PROPERTY(QVariantList tools READ tools NOTIFY changed)
    Q_PROPERTY(QVariantList reportOptions READ reportOptions NOTIFY changed)
    /// Addresses that were used before.
    Q_PROPERTY(QStringList knownAddresses READ knownAddresses NOTIFY changed)
    Q_PROPERTY(bool isMailReady READ isMailReady NOTIFY changed)
    Q_PROPERTY(QString reportsFolder READ reportsFolder CONSTANT)
public:
    FollowUpsViewModel(AppContext& context, AutomationLife& life);

    QVariantList tools() const;
    QVariantList reportOptions() const;
    QStringList knownAddresses() const;
    bool isMailReady() const;
    QString reportsFolder() const;

    /// In a few words, such as "Mail to 2 people, PDF report"; empty when nothing is wanted.
    Q_INVOKABLE QString lineOf(const QString& tool) const;
    /// {recipients: addresses with commas, report: "", "pdf" or "csv"}.
    Q_INVOKABLE QVariantMap wishes(const QString& tool) const;
    /// Why they could not be stored, for people; empty when they were.
    Q_INVOKABLE QString save(const QString& tool, const QString& recipients, const QString& report);
    /// Asks again what may have changed elsewhere.
    Q_INVOKABLE void refresh() { emit changed(); }

signals:
    void changed();

private:
    automation::RunFollowUps& followUps() const;

    AppContext& context_;
    AutomationLife& life_;
    std::shared_ptr<void> observing_;
};

} // namespace vh::app
