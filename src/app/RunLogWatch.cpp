#include "app/RunLogWatch.h"

#include "Core/RunLog.h"

#include <QFile>
#include <QFileInfo>

namespace vh::app {

RunLogWatch::RunLogWatch(RunLog& log) : log_(log), dispatcher_(this) {
    observing_ = log_.observe([this, post = dispatcher_.post()] {
        post([this] {
            watch();
            emit changed();
        });
    });
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &RunLogWatch::refresh);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &RunLogWatch::refresh);
    refresh();
}

void RunLogWatch::refresh() {
    watch();
    refreshing_.run([this](const Background::Task&) { log_.refresh(); },
                    [this](std::future<void>) {
                        // What was written before a new watch took hold must be looked for once more.
                        if (watch())
                            refresh();
                    });
}

bool RunLogWatch::watch() {
    // An appended line shows on the file only, a new or replaced file on the folder only.
    const QString file = QFile::decodeName(log_.location().c_str());
    QString folder = QFileInfo(file).path();
    while (!QFileInfo::exists(folder))
        folder = QFileInfo(folder).path();
    const QStringList wanted{file, folder};
    const QStringList watched = watcher_.files() + watcher_.directories();
    for (const QString& path : watched)
        if (!wanted.contains(path))
            watcher_.removePath(path);
    bool isNew = false;
    for (const QString& path : wanted)
        if (!watched.contains(path) && QFileInfo::exists(path))
            isNew |= watcher_.addPath(path);
    return isNew;
}

} // namespace vh::app
