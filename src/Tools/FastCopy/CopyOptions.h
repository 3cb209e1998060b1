#pragma once

#include "Core/ContentHash.h"
#include "Core/Describe.h"

namespace vh {
namespace copy {

enum class CopyMode {
    copy,
    clone ///< always verified, always with all metadata
};

/// What happens where the destination holds something of that name.
enum class CopyConflict { skip, overwrite, rename };

/// What becomes of symbolic links below a source.
enum class CopyLinks { leaveOut, asLinks };

/// How a copy is made.
struct CopyOptions {
    CopyMode mode = CopyMode::copy;
    CopyConflict conflict = CopyConflict::skip;
    bool verify = false;
    HashAlgorithm algorithm = HashAlgorithm::sha256;
    bool preserveMetadata = true;
    CopyLinks links = CopyLinks::leaveOut;
    bool cloneWhenPossible = true;   ///< never stored; always true after loading
    bool createDestinations = false; ///< never stored: a missing folder may be a disk that is not there

    bool verifies() const { return mode == CopyMode::clone || verify; }
    bool keepsMetadata() const { return mode == CopyMode::clone || preserveMetadata; }
};

} // namespace copy

template <>
inline constexpr auto describe<copy::CopyMode> =
    enumeration<copy::CopyMode>({{copy::CopyMode::copy, "copy"}, {copy::CopyMode::clone, "clone"}});

template <>
inline constexpr auto describe<copy::CopyConflict> =
    enumeration<copy::CopyConflict>({{copy::CopyConflict::skip, "skip"},
                                     {copy::CopyConflict::overwrite, "overwrite"},
                                     {copy::CopyConflict::rename, "rename"}});

template <>
inline constexpr auto describe<copy::CopyLinks> = enumeration<copy::CopyLinks>(
    {{copy::CopyLinks::leaveOut, "leaveOut"}, {copy::CopyLinks::asLinks, "asLinks"}});

template <>
inline constexpr auto describe<copy::CopyOptions> =
    record(field("mode", &copy::CopyOptions::mode).mayBeMissing(),
           field("conflict", &copy::CopyOptions::conflict).mayBeMissing(),
           field("verify", &copy::CopyOptions::verify).mayBeMissing(),
           field("algorithm", &copy::CopyOptions::algorithm).mayBeMissing(),
           field("preserveMetadata", &copy::CopyOptions::preserveMetadata).mayBeMissing(),
           field("links", &copy::CopyOptions::links).mayBeMissing());

} // namespace vh
