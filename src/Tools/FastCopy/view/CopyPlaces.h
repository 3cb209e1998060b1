#pragma once

#include "app/MainThreadDispatcher.h"

#include <QObject>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh::app {

/// What can be seen of a place that is copied from or to.
struct PlaceFacts {
    bool exists = false;
    bool isFolder = false;
    bool isWritable = false;
    std::string realPath;
    uint64_t device = 0; ///< two places of one device share their room
    /// Bytes; nothing when the file system does not tell.
    std::optional<int64_t> free, total;
};

/// Looks at places off the main thread, each by itself: a network drive that does not answer keeps nobody waiting, not
/// even the end of the program. Main thread.
class CopyPlaces : public QObject {
    Q_OBJECT
public:
    CopyPlaces() : dispatcher_(this) {}

    /// Null until it was looked at.
    const PlaceFacts* at(const std::string& path) const;
    /// Looks, also again; does nothing for one whose look is under way.
    void look(const std::vector<std::string>& paths);
    bool isLooking() const { return !looking_.empty(); }

signals:
    void changed();

private:
    std::map<std::string, PlaceFacts> known_;
    std::set<std::string> looking_;
    MainThreadDispatcher dispatcher_;
};

} // namespace vh::app
