#pragma once

#include "app/Background.h"
#include "app/MainThreadDispatcher.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <memory>

namespace vh {
class RunLog;
}

namespace vh::app {

/// Says on the main thread that the run log changed, whoever changed it: this process, another one, or a move.
class RunLogWatch : public QObject {
    Q_OBJECT
public:
    explicit RunLogWatch(RunLog& log);

signals:
    void changed();

private:
    void refresh();
    /// True when something is watched now that was not before.
    bool watch();

    RunLog& log_;
    QFileSystemWatcher watcher_;
    MainThreadDispatcher dispatcher_;
    std::shared_ptr<void> observing_;
    Background refreshing_;
};

} // namespace vh::app
