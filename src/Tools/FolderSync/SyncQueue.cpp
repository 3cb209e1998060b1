#include "Tools/FolderSync/SyncQueue.h"

#include <algorithm>

namespace vh::sync {

bool SyncQueue::request(const Uuid& id) {
    if (!running) {
        running = id;
        return true;
    }
    if (*running != id && std::ranges::find(waiting, id) == waiting.end())
        waiting.push_back(id);
    return false;
}

std::optional<Uuid> SyncQueue::finish() {
    running.reset();
    if (!waiting.empty()) {
        running = waiting.front();
        waiting.erase(waiting.begin());
    }
    return running;
}

void SyncQueue::drop(const Uuid& id) {
    std::erase(waiting, id);
}

} // namespace vh::sync
