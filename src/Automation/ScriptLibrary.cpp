#include "Automation/ScriptLibrary.h"

#include "Platform/Blank.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Folders.h"
#include "Platform/PartialSuffix.h"
#include "Platform/Trash.h"

#include <algorithm>
#include <stdexcept>

namespace vh::automation {

namespace {

constexpr std::string_view systemMark = "# varnholt: system";
constexpr int firstLines = 10;      ///< among which the mark may stand
constexpr size_t longestName = 200; ///< bytes; what is added while a file is written has to fit, too

bool wantsSystem(std::string_view body) {
    for (int line = 0; line < firstLines && !body.empty(); ++line) {
        const size_t end = body.find('\n');
        if (trimmed(body.substr(0, end)) == systemMark)
            return true;
        body.remove_prefix(end == std::string_view::npos ? body.size() : end + 1);
    }
    return false;
}

/// As the kernel reads the first line: the interpreter, and all that follows as one argument.
std::vector<std::string> interpreterOf(std::string_view body) {
    std::string_view line = body.substr(0, body.find('\n'));
    if (line.starts_with("#!")) {
        line = trimmed(line.substr(2));
        const size_t end = std::min(line.find_first_of(" \t"), line.size());
        const std::string_view argument = trimmed(line.substr(end));
        std::vector<std::string> words{std::string(line.substr(0, end))};
        if (!argument.empty())
            words.emplace_back(argument);
        if (!words[0].empty())
            return words;
    }
    return {"/bin/sh"};
}

} // namespace

ScriptLibrary::ScriptLibrary(std::string folder) : folder_(std::move(folder)) {}

std::string ScriptLibrary::folderOfUser() {
    return Folders::ofUser().data + "/Varnholt/Scripts";
}

std::vector<SavedScript> ScriptLibrary::scripts() const {
    std::vector<SavedScript> scripts;
    const auto status = statusOf(folder_);
    if (!status)
        return scripts;
    for (const std::string& name : childNames(folder_))
        if (auto found = script(name))
            scripts.push_back(std::move(*found));
    std::ranges::sort(scripts, {}, &SavedScript::name);
    return scripts;
}

std::optional<SavedScript> ScriptLibrary::script(std::string_view name) const {
    if (faultOf(name))
        return std::nullopt;
    const auto status = statusOf(pathOf(name));
    if (!status || status->type != FileType::file)
        return std::nullopt;
    auto body = readFileIfPresent(pathOf(name));
    if (!body)
        return std::nullopt;
    const bool isSystem = wantsSystem(*body);
    return SavedScript{std::string(name), std::move(*body), isSystem,
                       Date(std::chrono::seconds(status->modifiedSeconds))};
}

std::optional<std::string> ScriptLibrary::faultOf(std::string_view name) {
    if (trimmed(name).empty())
        return "scripts.fault.empty";
    if (name.size() > longestName)
        return "scripts.fault.long";
    if (name.front() == '.' || name.ends_with(partialSuffix))
        return "scripts.fault.hidden";
    const auto isBad = [](char c) {
        return c == '/' || static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
    };
    if (std::ranges::any_of(name, isBad))
        return "scripts.fault.characters";
    return std::nullopt;
}

void ScriptLibrary::save(const std::string& name, const std::string& body) {
    if (const auto fault = faultOf(name))
        throw std::invalid_argument(*fault);
    makeFolders(folder_);
    writeFileAtomically(pathOf(name), body, 0700);
}

bool ScriptLibrary::remove(std::string_view name) {
    if (faultOf(name))
        return false;
    const auto identity = identityOf(pathOf(name));
    if (!identity)
        return false;
    (void)moveToTrash(pathOf(name), identity);
    return true;
}

std::string ScriptLibrary::pathOf(std::string_view name) const {
    return folder_ + "/" + std::string(name);
}

ProcessRequest ScriptLibrary::requestFor(const std::string& path) {
    ProcessRequest request;
    request.arguments = interpreterOf(readFile(path));
    request.arguments.push_back(path);
    return request;
}

} // namespace vh::automation
