#pragma once

#include "Core/ContentHash.h"
#include "Core/Describe.h"
#include "Core/Message.h"
#include "Tools/FastCopy/LeftOut.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vh {
namespace copy {

enum class CopiedFileState { copied, cloned, skipped, failed, verified, mismatched };

/// What became of one file on one destination.
struct CopiedFile {
    std::string relative; ///< below the destination, beginning with the source's own name
    std::string destination;
    int64_t bytes = 0;
    CopiedFileState state = CopiedFileState::copied;
    std::optional<std::string> checksum; ///< lower-case hexadecimal, of a verified one
    std::string landedAs;                ///< below the destination, where that is not `relative`; not in JSON

    const std::string& place() const { return landedAs.empty() ? relative : landedAs; }
};

/// What became of one destination.
struct DestinationReport {
    std::string path;
    int64_t copied = 0;
    int64_t cloned = 0;
    int64_t replaced = 0; ///< of the copied and cloned
    int64_t skipped = 0;
    int64_t failed = 0;
    int64_t verified = 0;
    int64_t mismatched = 0; ///< also those whose source could not be read back
    int64_t badCopies = 0;
    int64_t bytes = 0;                 ///< written or cloned, without bad copies
    Messages faults;                   ///< what went wrong; not in JSON
    std::vector<std::string> problems; ///< the same in words, for JSON; see CopyReport::word
    bool removed = false;              ///< taken out of the copy by the person

    bool hasProblems() const;
    int64_t written() const; ///< files that are there and good
    int64_t whole() const;   ///< the same with those that were there already
};

enum class CopyOutcome { completed, completedWithProblems, stopped, failed };

/// What a copy did.
struct CopyReport {
    CopyOutcome outcome = CopyOutcome::completed;
    std::vector<DestinationReport> destinations;
    int64_t filesPlanned = 0;
    int64_t filesFinished = 0; ///< on a destination and not found bad
    bool verifyRequested = false;
    HashAlgorithm algorithm = HashAlgorithm::sha256;
    int64_t bytesPerDestination = 0;
    double seconds = 0;
    LeftOut leftOut;
    std::vector<CopiedFile> files; ///< in the order they were first met

    /// The faults of destinations that were not removed, each once; what not all of them have names those that do.
    Messages problems() const;
    void word(const Texts& texts);
    bool hasProblems() const;
    int64_t totalWritten() const;
    int64_t totalSkipped() const;
    int64_t totalFailed() const;
    int64_t totalMismatched() const;
    int64_t totalVerified() const;
    int64_t bytesWritten() const;
};

/// Over the destinations that were not removed.
CopyOutcome outcomeOf(const CopyReport& report, bool wasStopped);

} // namespace copy

template <>
inline constexpr auto describe<copy::CopiedFileState> =
    enumeration<copy::CopiedFileState>({{copy::CopiedFileState::copied, "copied"},
                                        {copy::CopiedFileState::cloned, "cloned"},
                                        {copy::CopiedFileState::skipped, "skipped"},
                                        {copy::CopiedFileState::failed, "failed"},
                                        {copy::CopiedFileState::verified, "verified"},
                                        {copy::CopiedFileState::mismatched, "mismatched"}});

template <>
inline constexpr auto describe<copy::CopiedFile> =
    record(field("relative", &copy::CopiedFile::relative),
           field("destination", &copy::CopiedFile::destination), field("bytes", &copy::CopiedFile::bytes),
           field("state", &copy::CopiedFile::state), field("checksum", &copy::CopiedFile::checksum));

template <>
inline constexpr auto describe<copy::DestinationReport> = record(
    field("path", &copy::DestinationReport::path), field("copied", &copy::DestinationReport::copied),
    field("cloned", &copy::DestinationReport::cloned), field("replaced", &copy::DestinationReport::replaced),
    field("skipped", &copy::DestinationReport::skipped), field("failed", &copy::DestinationReport::failed),
    field("verified", &copy::DestinationReport::verified),
    field("mismatched", &copy::DestinationReport::mismatched),
    field("badCopies", &copy::DestinationReport::badCopies), field("bytes", &copy::DestinationReport::bytes),
    field("problems", &copy::DestinationReport::problems),
    field("removed", &copy::DestinationReport::removed));

template <>
inline constexpr auto describe<copy::CopyOutcome> =
    enumeration<copy::CopyOutcome>({{copy::CopyOutcome::completed, "completed"},
                                    {copy::CopyOutcome::completedWithProblems, "completedWithProblems"},
                                    {copy::CopyOutcome::stopped, "stopped"},
                                    {copy::CopyOutcome::failed, "failed"}});

template <>
inline constexpr auto describe<copy::CopyReport> = record(
    field("outcome", &copy::CopyReport::outcome), field("destinations", &copy::CopyReport::destinations),
    field("filesPlanned", &copy::CopyReport::filesPlanned),
    field("filesFinished", &copy::CopyReport::filesFinished),
    field("verifyRequested", &copy::CopyReport::verifyRequested),
    field("algorithm", &copy::CopyReport::algorithm),
    field("bytesPerDestination", &copy::CopyReport::bytesPerDestination),
    field("seconds", &copy::CopyReport::seconds), field("leftOut", &copy::CopyReport::leftOut),
    field("files", &copy::CopyReport::files));

} // namespace vh
