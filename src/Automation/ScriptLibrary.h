#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Platform/Process.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh::automation {

/// A program text that the person saved under a name: run by the interpreter of its first line ("#!…"), else /bin/sh.
struct SavedScript {
    std::string name;
    std::string body;
    bool isSystem = false; ///< wants to act as root, which nothing does by itself
    Date changedAt;
    bool operator==(const SavedScript&) const = default;
};

/// The saved scripts: the files of one folder, the file's name being the script's. A script that wants root has the
/// mark "# varnholt: system" among its first lines. Any thread.
class ScriptLibrary {
public:
    explicit ScriptLibrary(std::string folder);
    /// "<data>/Varnholt/Scripts".
    static std::string folderOfUser();

    std::vector<SavedScript> scripts() const; ///< by name
    std::optional<SavedScript> script(std::string_view name) const;
    /// What keeps a name from being a script's as a key of the "scripts.fault." family; nothing when it is good.
    static std::optional<std::string> faultOf(std::string_view name);
    /// Replaces one of the same name. Throws SystemError, or std::invalid_argument for a name that is not good.
    void save(const std::string& name, const std::string& body);
    /// Moves it to the Trash; false when there is none.
    bool remove(std::string_view name);
    std::string pathOf(std::string_view name) const;
    const std::string& folder() const { return folder_; }
    /// Runs the script at `path` by its interpreter; input, folder and the rest are the caller's. Throws SystemError.
    static ProcessRequest requestFor(const std::string& path);

private:
    const std::string folder_;
};

} // namespace vh::automation

namespace vh {
template <>
inline constexpr auto
    describe<automation::SavedScript> = record(field("name", &automation::SavedScript::name),
                                               field("body", &automation::SavedScript::body),
                                               field("isSystem", &automation::SavedScript::isSystem),
                                               field("changedAt", &automation::SavedScript::changedAt));
} // namespace vh
