#include "Features/Flows/view/FlowRunValues.h"

#include "Features/Flows/FlowVariable.h"
#include "app/PathText.h"

#include <fmt/format.h>
#include <set>

namespace vh::app {

using namespace flows;

namespace {

constexpr auto diskKey = "disk";
constexpr auto filesKey = "files";
constexpr auto folderKey = "folder";

} // namespace

QVariantList neededValues(const Flow& flow, const FlowWords& words) {
    std::set<FlowVariable> used;
    for (const FlowNode& node : flow.nodes)
        for (const std::string& text : textsOf(node.kind))
            used.merge(variablesIn(text));
    QVariantList needed;
    const auto add = [&](const char* name, bool isUsed) {
        if (isUsed)
            needed << QVariantMap{
                {QStringLiteral("name"), QString::fromLatin1(name)},
                {QStringLiteral("title"), words.text(fmt::format("nodes-page.value.{}", name))},
                {QStringLiteral("isFolder"), name != filesKey}};
    };
    add(diskKey, used.contains(FlowVariable::disk) || used.contains(FlowVariable::diskName));
    add(filesKey, used.contains(FlowVariable::files));
    add(folderKey, used.contains(FlowVariable::folder));
    return needed;
}

FlowValues runValues(const QVariantMap& paths, std::string_view home) {
    const auto pathOf = [&](const char* name) {
        return chosenPath(paths.value(QString::fromLatin1(name)).toString(), home);
    };
    FlowValues values;
    if (const std::string disk = pathOf(diskKey); !disk.empty()) {
        values.disk = disk;
        values.diskName = disk.substr(disk.rfind('/') + 1);
    }
    if (const std::string file = pathOf(filesKey); !file.empty())
        values.files = std::vector{file};
    if (const std::string folder = pathOf(folderKey); !folder.empty())
        values.folder = folder;
    return values;
}

} // namespace vh::app
