#include "Features/Flows/FlowExpansion.h"
#include "Features/Flows/FlowValues.h"

#include <gmock/gmock.h>

namespace vh::flows {
namespace {

using testing::ElementsAre;

FlowValues values() {
    return {.disk = "/media/a",
            .diskName = "Cards/2",
            .files = std::vector<std::string>{"/in/a.mov", "/in/b c.mov"},
            .date = *parseIso8601("2026-03-08T23:05:00Z"),
            .timeZone = "Europe/Madrid"};
}

TEST(FlowVariable, ExpandsEveryLanguagesNamesAndLeavesTheRest) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"{disk}/{DISCO}/{disque}", "/media/a//media/a//media/a"},
        {"{unknown} {} {disk", "{unknown} {} {disk"},
        {"{{disk}}", "{/media/a}"},
        {"{a{files}", "{a/in/a.mov, /in/b c.mov"},
        {"{disk-name}", "Cards:2"},
        {"{nombre-disco}_{fecha}_{heure}", "Cards:2_2026-03-09_00-05"},
        {"{ disk }", "{ disk }"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(values().expand(text), expected) << text;
    for (const char* name : {".", ".."})
        EXPECT_EQ((FlowValues{.diskName = name}.expand("{nom-disque}")), "_");
    for (Language language : allLanguages)
        EXPECT_EQ(variablesIn(tokenOf(FlowVariable::diskName, language)), std::set{FlowVariable::diskName});
}

TEST(FlowVariable, ListsGrowByTheFilesAndAMissingValueSaysWhichItIs) {
    EXPECT_THAT(values().expandList({" {archivos} ", "x {disk} ", "see {files}"}),
                ElementsAre("/in/a.mov", "/in/b c.mov", "x /media/a", "see /in/a.mov, /in/b c.mov"));
    for (const char* token : {"{folder}", "{Carpeta}"})
        try {
            values().expand(std::string("to ") + token);
            ADD_FAILURE() << token;
        } catch (const NoValue& missing) {
            EXPECT_STREQ(missing.what(), token);
        }
    EXPECT_THROW(FlowValues{}.expandList({"{files}"}), NoValue);
}

TEST(FlowVariable, AreFilledInWhereAPersonWrote) {
    const auto expanded =
        expanding(FlowNodeKind{ToolNode{FleetTool{MountShareTool{"smb://{disk-name}", "u", "{disk}", true}}}},
                  values());
    EXPECT_EQ(std::get<ToolNode>(expanded).tool,
              FleetTool(MountShareTool{"smb://Cards:2", "u", "{disk}", true})); // a password is no text
    EXPECT_EQ(expanding(FlowNodeKind{ToolNode{CopyMaterialTool{{"{files}"}, {"{disk}/x"}, true}}}, values()),
              FlowNodeKind(ToolNode{CopyMaterialTool{{"/in/a.mov", "/in/b c.mov"}, {"/media/a/x"}, true}}));
    EXPECT_EQ(expanding(FlowNodeKind{EmailNode{{{"a@b.org"}, "{disk}", "{date}", true, false}}}, values()),
              FlowNodeKind(EmailNode{{{"a@b.org"}, "/media/a", "2026-03-09", true, false}}));
}

} // namespace
} // namespace vh::flows
