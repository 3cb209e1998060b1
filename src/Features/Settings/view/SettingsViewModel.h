#pragma once

#include <QObject>
#include <QVariantList>
#include <functional>
#include <string_view>

namespace vh::app {

class AppContext;
class DatabaseCare;

/// The settings; each is stored at once.
class SettingsViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString language READ language WRITE setLanguage NOTIFY languageChanged)
    Q_PROPERTY(QVariantList languageOptions READ languageOptions NOTIFY languageChanged)
    Q_PROPERTY(QString appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged)
    Q_PROPERTY(QVariantList appearanceOptions READ appearanceOptions NOTIFY languageChanged)
    Q_PROPERTY(QString databaseFolder READ databaseFolder NOTIFY databaseChanged)
    Q_PROPERTY(QString usageText READ usageText NOTIFY databaseChanged)
    Q_PROPERTY(QString keepRuns READ keepRuns WRITE setKeepRuns NOTIFY databaseChanged)
    Q_PROPERTY(QString keepFiles READ keepFiles WRITE setKeepFiles NOTIFY databaseChanged)
    Q_PROPERTY(QVariantList keepOptions READ keepOptions NOTIFY languageChanged)
    Q_PROPERTY(QString moveFailure READ moveFailure NOTIFY databaseChanged)
    /// Why the last setting could not be stored or the move not begun; empty while all is well.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(QString version READ version CONSTANT)
public:
    explicit SettingsViewModel(AppContext& context);

    QString language() const;
    void setLanguage(const QString& value);
    QVariantList languageOptions() const;
    QString appearance() const;
    void setAppearance(const QString& value);
    QVariantList appearanceOptions() const;
    QString databaseFolder() const;
    QString usageText() const;
    QString keepRuns() const;
    void setKeepRuns(const QString& value);
    QString keepFiles() const;
    void setKeepFiles(const QString& value);
    QVariantList keepOptions() const;
    QString moveFailure() const;
    QString message() const { return message_; }
    QString version() const;

    /// `folder` is a path or a file's URL.
    Q_INVOKABLE void moveDatabase(const QString& folder);
    Q_INVOKABLE void prune();

signals:
    void languageChanged();
    void appearanceChanged();
    void databaseChanged();
    void messageChanged();

private:
    DatabaseCare& care() const;
    bool store(const std::function<void()>& change);
    void say(const QString& message);

    AppContext& context_;
    QString message_;
};

} // namespace vh::app
