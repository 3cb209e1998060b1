#pragma once

#include "Core/Date.h"
#include "app/MainThreadDispatcher.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vh::app {

/// What becomes of a job when the person closes the window.
enum class AtClosing { ends, isAsked };

/// How a view tells of a job that it runs.
struct ActivityReport {
    QString key;
    bool active = true; ///< false ends the job
    QString title;
    QString toolID;                 ///< may be empty
    std::optional<double> progress; ///< 0 to 1, nothing when unknown
    AtClosing atClosing = AtClosing::isAsked;
};

class JobToken;

/// The jobs that run now, in the order of their start. Belongs to the main thread.
class ActivityCenter : public QObject {
    Q_OBJECT
public:
    struct Job {
        QString id;
        QString title;
        Date startedAt;
        QString toolID; ///< may be empty
        std::optional<double> progress;
        AtClosing atClosing = AtClosing::ends;
    };

    explicit ActivityCenter(Clock clock = systemNow);

    /// Adds a job and gives its key.
    [[nodiscard]] QString begin(const QString& title, const QString& tool = {},
                                AtClosing atClosing = AtClosing::ends);
    /// The same, ending with the token.
    [[nodiscard]] JobToken beginToken(const QString& title, const QString& tool = {},
                                      AtClosing atClosing = AtClosing::ends);
    /// Creates, updates or ends a job.
    void report(const ActivityReport& report);
    /// Both do nothing for a key that is not running.
    void setProgress(const QString& key, std::optional<double> progress);
    void end(const QString& key);

    const std::vector<Job>& running() const { return jobs_; }
    QSet<QString> busyTools() const;
    /// The mean of the progresses that are known.
    std::optional<double> overallProgress() const;

signals:
    void changed();

private:
    Job* find(const QString& key);

    Clock clock_;
    std::vector<Job> jobs_;
    MainThreadDispatcher dispatcher_;
};

/// Ends its job when it goes, from whatever thread, so that no job is left spinning.
class JobToken {
public:
    JobToken(JobToken&&) noexcept = default;
    JobToken& operator=(JobToken&&) noexcept = default;

    const QString& key() const { return key_; }

private:
    friend class ActivityCenter;
    JobToken(QString key, const std::function<void()>& end);

    QString key_;
    std::shared_ptr<void> end_; ///< its deleter ends the job
};

} // namespace vh::app
