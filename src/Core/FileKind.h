#pragma once

#include "Core/Describe.h"
#include "Platform/Files.h"

#include <string_view>

namespace vh {

/// What a file is for, told by its name alone.
enum class FileKind {
    image,
    video,
    music,
    document,
    archive,
    application,
    code,
    font,
    diskImage,
    folder,
    other
};

template <>
inline constexpr auto describe<FileKind> = enumeration<FileKind>({
    {FileKind::image, "image"},
    {FileKind::video, "video"},
    {FileKind::music, "music"},
    {FileKind::document, "document"},
    {FileKind::archive, "archive"},
    {FileKind::application, "application"},
    {FileKind::code, "code"},
    {FileKind::font, "font"},
    {FileKind::diskImage, "diskImage"},
    {FileKind::folder, "folder"},
    {FileKind::other, "other"},
});

/// The kind of the item named at the end of `path`. Case does not matter. A folder is a folder unless its name makes
/// it a package, such as an application; a name without an extension is `other`.
FileKind fileKindOf(std::string_view path, FileType type = FileType::file);

} // namespace vh
