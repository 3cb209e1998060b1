#include "Core/ErrorMessage.h"

#include "Core/Printable.h"
#include "Platform/FileMetadata.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace vh {

namespace {

struct ReasonRow {
    int code;
    const char* key;
};

constexpr std::array reasons{
    ReasonRow{ENOSPC, "error.no-space"},
    ReasonRow{EDQUOT, "error.quota"},
    ReasonRow{EACCES, "error.not-permitted"},
    ReasonRow{EPERM, "error.not-allowed"},
    ReasonRow{EROFS, "error.read-only"},
    ReasonRow{ENOENT, "error.no-such-file"},
    ReasonRow{EEXIST, "error.exists"},
    ReasonRow{ENOTDIR, "error.not-a-folder"},
    ReasonRow{EISDIR, "error.is-a-folder"},
    ReasonRow{ENOTEMPTY, "error.not-empty"},
    ReasonRow{ENAMETOOLONG, "error.name-too-long"},
    ReasonRow{ELOOP, "error.link-loop"},
    ReasonRow{EXDEV, "error.other-volume"},
    ReasonRow{EFBIG, "error.file-too-large"},
    ReasonRow{EIO, "error.input-output"},
    ReasonRow{EBUSY, "error.busy"},
    ReasonRow{ETXTBSY, "error.busy"},
    ReasonRow{EMFILE, "error.too-many-open"},
    ReasonRow{ENFILE, "error.too-many-open"},
    ReasonRow{ENOMEM, "error.no-memory"},
    ReasonRow{EINVAL, "error.not-possible-here"},
    ReasonRow{EILSEQ, "error.name-refused"},
    ReasonRow{EOPNOTSUPP, "error.not-possible-here"},
    ReasonRow{ENODEV, "error.device-gone"},
    ReasonRow{ENXIO, "error.device-gone"},
    ReasonRow{ESTALE, "error.device-gone"},
    ReasonRow{ENOTCONN, "error.connection-lost"},
    ReasonRow{ECONNRESET, "error.connection-lost"},
    ReasonRow{ETIMEDOUT, "error.timed-out"},
    ReasonRow{ECONNREFUSED, "error.connection-refused"},
    ReasonRow{EHOSTUNREACH, "error.unreachable"},
    ReasonRow{ENETUNREACH, "error.unreachable"},
};

/// What Platform refuses by itself, in its own words.
struct RefusalRow {
    std::string_view words;
    const char* key;
};

constexpr std::array refusals{
    RefusalRow{"Something else lies there by now", "error.changed-meanwhile"},
    RefusalRow{"Something else came there meanwhile; it lies in the Trash", "error.taken-meanwhile"},
    RefusalRow{"Another volume is mounted here", "error.mounted-over"},
    RefusalRow{"Not a plain file", "error.not-a-plain-file"},
    RefusalRow{"Not a file, folder or link, so it cannot be copied", "error.not-copyable"},
    RefusalRow{"Too many folders lie one inside the other", "error.too-deep"},
    RefusalRow{"The Trash does not say where this came from", "error.trash-unknown"},
    RefusalRow{"This Trash folder belongs to somebody else", "error.trash-foreign"},
    RefusalRow{"The folder belongs to another user", "error.folder-foreign"},
};

} // namespace

Message reasonOf(const SystemError& error) {
    const auto* row = std::ranges::find(reasons, error.code(), &ReasonRow::code);
    if (row != reasons.end())
        return {row->key, {}};
    const auto* refusal = std::ranges::find(refusals, error.reason(), &RefusalRow::words);
    if (error.code() == 0 && refusal != refusals.end())
        return {refusal->key, {}};
    return Message::literal(printable(error.reason()));
}

Message messageOf(const std::exception& error) {
    if (const auto* speaking = dynamic_cast<const SpeakingError*>(&error))
        return speaking->message();
    const auto* system = dynamic_cast<const SystemError*>(&error);
    if (!system)
        return Message::literal(printable(error.what()));
    if (system->path().empty())
        return reasonOf(*system);
    return atPath(system->path(), reasonOf(*system));
}

Message messageOf(const RefusedPart& part) {
    const auto name = [&]() -> Message {
        switch (part.what) {
        case RefusedPart::What::owner:
            return {"error.part.owner", {}};
        case RefusedPart::What::mode:
            return {"error.part.mode", {}};
        case RefusedPart::What::times:
            return {"error.part.times", {}};
        default:
            return {"error.part.attribute", {{"name", printable(part.attribute)}}};
        }
    };
    return {"error.part", {{"part", name()}, {"reason", reasonOf(SystemError(part.code, ""))}}};
}

Message atPath(std::string_view path, Message what) {
    return {"error.at-path", {{"path", printable(path)}, {"reason", std::move(what)}}};
}

} // namespace vh
