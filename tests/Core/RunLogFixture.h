#pragma once

#include "Core/Codec.h"
#include "Core/DatabaseLocation.h"
#include "Core/RunFiles.h"
#include "Core/RunLog.h"
#include "Core/UserDefaults.h"
#include "Platform/Files.h"
#include "support/TempDir.h"

#include <fmt/format.h>

namespace vh::test {

inline const Date noon = *parseIso8601("2026-11-22T12:00:00Z");

/// A database in a folder of its own, as one process sees it.
struct Database {
    explicit Database(std::string atRoot, size_t maxRecords = RunLog::defaultMaxRecords)
        : root(std::move(atRoot)), defaults(root + "/defaults.json"), files(prepared()),
          log(
              defaults, files, [this] { return now; }, maxRecords) {}

    /// Tells a fresh sandbox that its database lies in it and not in the person's home.
    UserDefaults& prepared() {
        if (!defaults.get<std::string>(DatabaseLocation::key))
            defaults.set(DatabaseLocation::key, root + "/data");
        return defaults;
    }

    std::string root;
    Date now = noon;
    UserDefaults defaults;
    RunFiles files;
    RunLog log;
};

inline RunRecord makeRecord(std::string summary, Date startedAt = noon) {
    return {.id = Uuid::random(),
            .toolID = "fast-copy",
            .startedAt = startedAt,
            .duration = 1.5,
            .summary = std::move(summary),
            .metrics = {{"bytesCopied", 100}},
            .computer = "Ateneo"};
}

inline std::vector<std::string> summaries(const std::vector<RunRecord>& records) {
    std::vector<std::string> texts;
    for (const auto& record : records)
        texts.push_back(record.summary);
    return texts;
}

} // namespace vh::test
