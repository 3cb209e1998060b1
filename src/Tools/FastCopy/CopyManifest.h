#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/ErrorMessage.h"
#include "Core/JobControl.h"
#include "Tools/FastCopy/CopyReport.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vh {
namespace copy {

/// A list of checksums that lies beside a copy, so that anybody can check it later.
enum class ManifestKind {
    sums, ///< "<hash>  <path>" a line, as sha256sum and its kin read it
    mhl ///< ASC Media Hash List, version 1.1; SHA-256 stands there as <sha256>, which that version does not name
};

struct ManifestEntry {
    std::string relative; ///< below the manifest's folder, without "." and ".."
    HashAlgorithm algorithm = HashAlgorithm::sha256;
    std::string hash; ///< lower-case hexadecimal
    std::optional<int64_t> bytes;
    std::optional<Date> modified; ///< written, not read
};

struct Manifest {
    std::vector<ManifestEntry> entries;
};

/// Why a text is no manifest, with the line; what() is in English.
class ManifestError : public std::runtime_error, public SpeakingError {
public:
    explicit ManifestError(Message why);
    Message message() const override { return message_; }

private:
    Message message_;
};

struct WrittenManifest {
    std::string path; ///< empty when there was nothing to list
    Messages leftOut; ///< files whose name that kind of list cannot hold
};

/// Writes the manifest of the verified files of one destination into its folder, in one step and under a name that is
/// free. Throws SystemError.
WrittenManifest writeManifest(const CopyReport& report, size_t destination, ManifestKind kind, Date now);

/// Of either kind, told apart by its text. Throws ManifestError, also for paths that lead out of the folder.
Manifest parseManifest(std::string_view text);

/// What a check against a manifest found.
struct ManifestCheck {
    int64_t files = 0; ///< listed
    int64_t matching = 0;
    int64_t bytes = 0;                  ///< read
    std::vector<std::string> differing; ///< other bytes or another size, relative
    std::vector<std::string> missing;
    Messages faults; ///< what could not be read and why, also what lies behind a link; not in JSON
    std::vector<std::string> unreadable; ///< the same in words
    bool stopped = false;

    /// All that is wrong, a message a file.
    Messages problems() const;
};

/// Reads every listed file, from the medium. Throws SystemError or ManifestError when the manifest cannot be read.
ManifestCheck checkManifest(const std::string& path, const JobControl& control);

} // namespace copy

template <>
inline constexpr auto describe<copy::ManifestKind> =
    enumeration<copy::ManifestKind>({{copy::ManifestKind::sums, "sums"}, {copy::ManifestKind::mhl, "mhl"}});

template <>
inline constexpr auto describe<copy::ManifestCheck> = record(
    field("files", &copy::ManifestCheck::files), field("matching", &copy::ManifestCheck::matching),
    field("bytes", &copy::ManifestCheck::bytes), field("differing", &copy::ManifestCheck::differing),
    field("missing", &copy::ManifestCheck::missing), field("unreadable", &copy::ManifestCheck::unreadable),
    field("stopped", &copy::ManifestCheck::stopped));

} // namespace vh
