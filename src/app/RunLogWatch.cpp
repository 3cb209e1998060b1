#include "app/RunLogWatch.h"

#include "Core/RunLog.h"

#include <QFile>
#include <QFileInfo>

namespace vh::app {

RunLogWatch::RunLogWatch(RunLog& log) : log_(log), door_(this) {
    observing_ = log_.observe([this, way = door_.way()] {
        way([this] {
            watch();
            emit changed();
        });
    });
    const auto refresh = [this] {
        watch();
        refreshing_.run([this](const Background::Task&) { log_.refresh(); }, [](std::future<void>) {});
    };
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, refresh);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, refresh);
    watch();
}

void RunLogWatch::watch() {
    // An appended line shows on the file only, a replaced file on the folder only.
    const QString file = QFile::decodeName(log_.location().c_str());
    const QStringList wanted{file, QFileInfo(file).path()};
    for (const QString& path : watcher_.files() + watcher_.directories())
        if (!wanted.contains(path))
            watcher_.removePath(path);
    for (const QString& path : wanted)
        if (QFileInfo::exists(path))
            watcher_.addPath(path);
}

} // namespace vh::app
