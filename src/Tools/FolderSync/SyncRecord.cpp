#include "Tools/FolderSync/SyncRecord.h"

#include "Core/Printable.h"
#include "Core/Texts.h"

namespace vh::sync {

namespace {

constexpr size_t mostErrorsTold = 20;

int64_t changesOf(const SyncResult& result) {
    return result.copied + result.updated + result.deleted;
}

/// Nothing when nothing was left out.
std::optional<Message> leftOutMessage(const std::optional<SyncLeftOut>& leftOut) {
    if (!leftOut)
        return std::nullopt;
    Messages kinds;
    const auto add = [&](int64_t count, const char* key) {
        if (count > 0)
            kinds.push_back({key, {{"count", count}}});
    };
    add(leftOut->pipes, "folder-sync.left-out.pipes");
    add(leftOut->sockets, "folder-sync.left-out.sockets");
    add(leftOut->devices, "folder-sync.left-out.devices");
    return Message{"folder-sync.left-out", {{"kinds", kinds}}};
}

} // namespace

RunDetails detailsOf(const SyncPair& pair) {
    return {{RunDetail::source, pair.source}, {RunDetail::destinations, pair.destination}};
}

RunDetails detailsOf(const SyncResult& result, int64_t bytes) {
    return {{RunDetail::files, std::to_string(changesOf(result))},
            {RunDetail::bytes, std::to_string(bytes)},
            {RunDetail::failed, std::to_string(result.faults.size())}};
}

std::string leftOutText(const std::optional<SyncLeftOut>& leftOut, const Texts& texts) {
    const auto message = leftOutMessage(leftOut);
    return message ? worded(*message, texts) : std::string();
}

Messages summaryOf(const SyncResult& result) {
    const char* const key = result.stopped          ? "folder-sync.run-stopped"
                            : result.faults.empty() ? "folder-sync.run-summary"
                                                    : "folder-sync.run-failed";
    Messages said{{key,
                   {{"copied", result.copied},
                    {"updated", result.updated},
                    {"deleted", result.deleted},
                    {"total", changesOf(result)},
                    {"errors", result.faults.size()},
                    {"first", result.faults.empty() ? Message::literal("") : result.faults.front()}}}};
    if (auto more = leftOutMessage(result.leftOut))
        said.push_back(std::move(*more));
    return said;
}

Outcome outcomeOf(const SyncResult& result) {
    if (result.stopped)
        return Outcome::cancelled;
    if (result.faults.empty())
        return Outcome::success;
    return changesOf(result) > 0 ? Outcome::warning : Outcome::failed;
}

RunMetrics metricsOf(const SyncResult& result, int64_t bytes) {
    return {{RunMetric::filesCopied, static_cast<double>(result.copied + result.updated)},
            {RunMetric::bytesCopied, static_cast<double>(bytes)},
            {RunMetric::filesRemoved, static_cast<double>(result.deleted)},
            {RunMetric::errors, static_cast<double>(result.faults.size())}};
}

Message messageOf(const SyncError& error) {
    if (error.kind == SyncError::Kind::nested)
        return {"folder-sync.error-nested", {}};
    return {"folder-sync.error-missing", {{"path", printable(error.path)}}};
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

std::string textOf(const SyncError& error, const Texts& texts) {
    return worded(messageOf(error), texts);
}

Message messageOf(const WatchState& blocker, const SyncPair& pair) {
    using enum WatchState::Kind;
    switch (blocker.kind) {
    case waitingForSource:
        return {"folder-sync.error-missing", {{"path", printable(pair.source)}}};
    case waitingForDestination:
        return {"folder-sync.error-missing", {{"path", printable(pair.destination)}}};
    case notPermitted:
        return {"folder-sync.error-not-permitted", {{"path", printable(blocker.text)}}};
    case held:
        return {"folder-sync.held-line", {{"name", printable(pair.title())}, {"count", blocker.deletes}}};
    case failed:
    case watching:
        break;
    }
    return Message::literal(blocker.text);
}

std::string textOf(const WatchState& blocker, const SyncPair& pair, const Texts& texts) {
    return worded(messageOf(blocker, pair), texts);
}

} // namespace vh::sync
