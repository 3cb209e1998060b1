#pragma once

#include "Core/DatabaseKeep.h"
#include "Core/Date.h"
#include "app/Background.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <optional>
#include <string>

namespace vh {
class RunFiles;
class RunLog;
class UserDefaults;
} // namespace vh

namespace vh::app {

/// What the database holds.
struct DatabaseUsage {
    int64_t runs = 0;
    int64_t lists = 0; ///< file lists
    int64_t bytes = 0;
    std::optional<Date> oldest;
};

/// Keeps the run log and its file lists within what the person wants kept, now and every few hours.
class DatabaseCare : public QObject {
    Q_OBJECT
public:
    DatabaseCare(UserDefaults& defaults, RunLog& log, RunFiles& files, Clock clock = systemNow);

    /// Prunes and measures, and does so again while the object lives.
    void start();
    /// Both work off the main thread and end in changed().
    void prune();
    void measure();
    /// Moves the database and ends in changed(); does nothing while another move runs.
    void move(const std::string& folder);

    /// Stored at once; throw SystemError when they cannot be. What nobody chose is kept always, file lists a year.
    Keep keepRuns() const;
    Keep keepFiles() const;
    void setKeepRuns(Keep keep);
    void setKeepFiles(Keep keep);

    std::string folder() const;
    /// Nothing until it was measured.
    const std::optional<DatabaseUsage>& usage() const { return usage_; }
    /// Why the last move failed, empty after one that worked.
    const QString& moveFailure() const { return moveFailure_; }
    bool isMoving() const { return moving_.isBusy(); }

signals:
    void changed();

private:
    DatabaseUsage measured() const;

    UserDefaults& defaults_;
    RunLog& log_;
    RunFiles& files_;
    Clock clock_;
    std::optional<DatabaseUsage> usage_;
    QString moveFailure_;
    QTimer timer_;
    Background pruning_;
    Background measuring_;
    Background moving_;
};

} // namespace vh::app
