#include "Tools/FolderSync/SyncRecord.h"

#include "Core/Printable.h"
#include "Core/Texts.h"

namespace vh::sync {

namespace {

constexpr size_t mostErrorsTold = 20;

int64_t changesOf(const SyncResult& result) {
    return result.copied + result.updated + result.deleted;
}

} // namespace

RunDetails detailsOf(const SyncPair& pair) {
    return {{RunDetail::source, pair.source}, {RunDetail::destinations, pair.destination}};
}

RunDetails detailsOf(const SyncResult& result, int64_t bytes) {
    std::vector<std::string> told;
    for (const std::string& each : result.errors) {
        if (told.size() == mostErrorsTold) {
            told.emplace_back("…");
            break;
        }
        told.push_back(printable(each));
    }
    return {{RunDetail::files, std::to_string(changesOf(result))},
            {RunDetail::bytes, std::to_string(bytes)},
            {RunDetail::failed, std::to_string(result.errors.size())},
            {RunDetail::errors, joinList(told)}};
}

std::string leftOutText(const std::optional<SyncLeftOut>& leftOut, const Texts& texts) {
    if (!leftOut)
        return {};
    std::string kinds;
    const auto add = [&](int64_t count, const char* key) {
        if (count > 0)
            kinds += (kinds.empty() ? "" : ", ") + texts.text(key, {{"count", count}});
    };
    add(leftOut->pipes, "folder-sync.left-out.pipes");
    add(leftOut->sockets, "folder-sync.left-out.sockets");
    add(leftOut->devices, "folder-sync.left-out.devices");
    return texts.text("folder-sync.left-out", {{"kinds", kinds}});
}

std::string summaryOf(const SyncResult& result, const Texts& texts) {
    const char* const key = result.stopped          ? "folder-sync.run-stopped"
                            : result.errors.empty() ? "folder-sync.run-summary"
                                                    : "folder-sync.run-failed";
    std::string text =
        texts.text(key, {{"copied", result.copied},
                         {"updated", result.updated},
                         {"deleted", result.deleted},
                         {"total", changesOf(result)},
                         {"errors", result.errors.size()},
                         {"first", result.errors.empty() ? "" : printable(result.errors.front())}});
    if (const std::string more = leftOutText(result.leftOut, texts); !more.empty())
        text += " " + more;
    return text;
}

Outcome outcomeOf(const SyncResult& result) {
    if (result.stopped)
        return Outcome::cancelled;
    if (result.errors.empty())
        return Outcome::success;
    return changesOf(result) > 0 ? Outcome::warning : Outcome::failed;
}

RunMetrics metricsOf(const SyncResult& result, int64_t bytes) {
    return {{RunMetric::filesCopied, static_cast<double>(result.copied + result.updated)},
            {RunMetric::bytesCopied, static_cast<double>(bytes)},
            {RunMetric::filesRemoved, static_cast<double>(result.deleted)},
            {RunMetric::errors, static_cast<double>(result.errors.size())}};
}

std::string textOf(const SyncError& error, const Texts& texts) {
    return error.kind == SyncError::Kind::nested
               ? texts.text("folder-sync.error-nested")
               : texts.text("folder-sync.error-missing", {{"path", printable(error.path)}});
}

std::string_view textName(WatchState::Kind kind) {
    using enum WatchState::Kind;
    switch (kind) {
    case notPermitted:
        return "not-permitted";
    case held:
        return "held";
    case failed:
        return "failed";
    case waitingForSource:
        return "no-source";
    case waitingForDestination:
        return "no-destination";
    case watching:
        break;
    }
    return "watching";
}

std::string textOf(const WatchState& blocker, const SyncPair& pair, const Texts& texts) {
    using enum WatchState::Kind;
    switch (blocker.kind) {
    case waitingForSource:
        return texts.text("folder-sync.error-missing", {{"path", printable(pair.source)}});
    case waitingForDestination:
        return texts.text("folder-sync.error-missing", {{"path", printable(pair.destination)}});
    case notPermitted:
        return texts.text("folder-sync.error-not-permitted", {{"path", printable(blocker.text)}});
    case held:
        return texts.text("folder-sync.held-line",
                          {{"name", printable(pair.title())}, {"count", blocker.deletes}});
    case failed:
    case watching:
        break;
    }
    return blocker.text;
}

} // namespace vh::sync
