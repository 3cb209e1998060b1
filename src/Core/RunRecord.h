#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/Uuid.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vh {

enum class Outcome { success, warning, failed, cancelled };

/// What started a job.
enum class Trigger {
    manual,
    scheduled,
    optimize,
    company,
    flow,
    agent,
    diskMounted,
    diskUnmounted,
    newFiles,
    shareMounted,
    launch,
    power,
    idle,
    afterFlow,
    external
};

enum class RunMetric {
    freedBytes,
    filesRemoved,
    filesCopied,
    bytesCopied,
    duplicatesFound,
    drivesFailing,
    drivesWarning,
    drivesTotal,
    errors,
    itemsProcessed,
    badBlocks,
    bytesImaged
};

enum class RunDetail {
    source,
    destinations,
    files,
    bytes,
    verified,
    failed,
    preset,
    flow,
    event,
    errors,
    output
};

using RunMetrics = std::map<RunMetric, double>;
using RunDetails = std::map<RunDetail, std::string>;

/// One job that ended, as it stands in the run log.
struct RunRecord {
    Uuid id;
    std::string toolID;  ///< of the catalogue, or a pseudo identifier such as "company-sync"
    Date startedAt;      ///< whole seconds once it has been in the file
    double duration = 0; ///< seconds
    Outcome outcome = Outcome::success;
    Trigger trigger = Trigger::manual;
    std::string summary;                   ///< one line for people
    std::map<std::string, double> metrics; ///< by raw value of RunMetric
    std::optional<std::string> computer;   ///< the one that ran it; unset in old lines
    std::optional<std::map<std::string, std::string>>
        details; ///< by raw value of RunDetail; unset when empty
    /// What the words are made of, as JSON that is read when they are shown (Core/RunWords.h); unset in old lines.
    std::optional<std::string> facts = {};

    std::optional<double> metric(RunMetric which) const;
    std::optional<std::string> detail(RunDetail which) const;
    /// How many files the run was about, from its details or else its metrics.
    std::optional<int64_t> files() const;
    std::optional<int64_t> bytes() const;

    bool operator==(const RunRecord&) const = default;
};

/// By raw value, without the empty ones; nothing when none is left.
std::optional<std::map<std::string, std::string>> rawDetails(const RunDetails& details);

/// Several texts as one detail: one a line.
std::string joinList(const std::vector<std::string>& items);
/// The lines of such a detail.
std::vector<std::string> splitList(const std::string& joined);

template <>
inline constexpr auto describe<Outcome> = enumeration<Outcome>({{Outcome::success, "success"},
                                                                {Outcome::warning, "warning"},
                                                                {Outcome::failed, "failed"},
                                                                {Outcome::cancelled, "cancelled"}});

// A log written by a newer version still loads.
template <>
inline constexpr auto describe<Trigger> = enumeration<Trigger>({{Trigger::manual, "manual"},
                                                                {Trigger::scheduled, "scheduled"},
                                                                {Trigger::optimize, "optimize"},
                                                                {Trigger::company, "company"},
                                                                {Trigger::flow, "flow"},
                                                                {Trigger::agent, "agent"},
                                                                {Trigger::diskMounted, "diskMounted"},
                                                                {Trigger::diskUnmounted, "diskUnmounted"},
                                                                {Trigger::newFiles, "newFiles"},
                                                                {Trigger::shareMounted, "shareMounted"},
                                                                {Trigger::launch, "launch"},
                                                                {Trigger::power, "power"},
                                                                {Trigger::idle, "idle"},
                                                                {Trigger::afterFlow, "afterFlow"},
                                                                {Trigger::external, "external"}})
                                              .otherwise(Trigger::manual);

template <>
inline constexpr auto
    describe<RunMetric> = enumeration<RunMetric>({{RunMetric::freedBytes, "freedBytes"},
                                                  {RunMetric::filesRemoved, "filesRemoved"},
                                                  {RunMetric::filesCopied, "filesCopied"},
                                                  {RunMetric::bytesCopied, "bytesCopied"},
                                                  {RunMetric::duplicatesFound, "duplicatesFound"},
                                                  {RunMetric::drivesFailing, "drivesFailing"},
                                                  {RunMetric::drivesWarning, "drivesWarning"},
                                                  {RunMetric::drivesTotal, "drivesTotal"},
                                                  {RunMetric::errors, "errors"},
                                                  {RunMetric::itemsProcessed, "itemsProcessed"},
                                                  {RunMetric::badBlocks, "badBlocks"},
                                                  {RunMetric::bytesImaged, "bytesImaged"}});

template <>
inline constexpr auto describe<RunDetail> = enumeration<RunDetail>({{RunDetail::source, "source"},
                                                                    {RunDetail::destinations, "destinations"},
                                                                    {RunDetail::files, "files"},
                                                                    {RunDetail::bytes, "bytes"},
                                                                    {RunDetail::verified, "verified"},
                                                                    {RunDetail::failed, "failed"},
                                                                    {RunDetail::preset, "preset"},
                                                                    {RunDetail::flow, "flow"},
                                                                    {RunDetail::event, "event"},
                                                                    {RunDetail::errors, "errors"},
                                                                    {RunDetail::output, "output"}});

template <>
inline constexpr auto describe<RunRecord> =
    record(field("id", &RunRecord::id), field("toolID", &RunRecord::toolID),
           field("startedAt", &RunRecord::startedAt), field("duration", &RunRecord::duration),
           field("outcome", &RunRecord::outcome), field("trigger", &RunRecord::trigger),
           field("summary", &RunRecord::summary), field("metrics", &RunRecord::metrics),
           field("computer", &RunRecord::computer), field("details", &RunRecord::details),
           field("facts", &RunRecord::facts).forgiving());

} // namespace vh
