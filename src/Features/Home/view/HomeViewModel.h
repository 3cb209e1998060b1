#pragma once

#include "Core/Date.h"
#include "Platform/Volumes.h"
#include "app/Background.h"

#include <QObject>
#include <QTimer>
#include <QVariantList>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {
struct RunRecord;
}

namespace vh::app {

class AppContext;

/// The first page: the computer, its disks, the tools, what runs and what was done. All that must be read from disk
/// comes after the first frame.
class HomeViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString greeting READ greeting NOTIFY timeChanged)
    Q_PROPERTY(QString hostLine READ hostLine NOTIFY timeChanged)
    /// `fraction` is used, `tone` "normal", "warning" or "bad".
    Q_PROPERTY(QVariantList disks READ disks NOTIFY disksChanged)
    /// The tools of this version, and those that are not there yet.
    Q_PROPERTY(QVariantList tools READ tools NOTIFY toolsChanged)
    Q_PROPERTY(QVariantList absentTools READ absentTools NOTIFY toolsChanged)
    Q_PROPERTY(QVariantList running READ running NOTIFY runningChanged)
    Q_PROPERTY(QVariantList recent READ recent NOTIFY recentChanged)
    /// Until disks and runs have been read for the first time.
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY loadingChanged)
public:
    explicit HomeViewModel(AppContext& context);
    ~HomeViewModel() override;

    QString greeting() const;
    QString hostLine() const;
    QVariantList disks() const;
    QVariantList tools() const { return toolsThatAre(true); }
    QVariantList absentTools() const { return toolsThatAre(false); }
    QVariantList running() const;
    QVariantList recent() const;
    bool isLoading() const { return !volumes_ || !runs_; }

signals:
    void timeChanged();
    void disksChanged();
    void toolsChanged();
    void runningChanged();
    void recentChanged();
    void loadingChanged();

private:
    struct Runs;
    QVariantList toolsThatAre(bool available) const;
    void openLog();
    void refresh();
    void readDisks();
    void readRuns();
    void retell();
    QString lineOf(std::string_view toolID) const;
    QString timeOf(const RunRecord& record) const;

    AppContext& context_;
    const std::string hostName_;
    const std::string systemName_;
    Date toldOn_;                                ///< the day that the texts speak of as today
    std::optional<std::vector<Volume>> volumes_; ///< nothing until read
    std::unique_ptr<Runs> runs_;
    QTimer timer_;
    Background readingDisks_;
    Background readingRuns_;
};

} // namespace vh::app
