#include "house/LayerRules.h"
#include "house/SourceFiles.h"

#include <gtest/gtest.h>

namespace vh::house {
namespace {

TEST(Layers, TheRulesTellGoodFromBad) {
    struct Case {
        std::string_view path;
        std::string_view line;
        bool isFault;
    };
    const Case cases[]{
        {"Core/RunLog.cpp", "#include \"Core/Date.h\"", false},
        {"Core/RunLog.cpp", "#include \"Platform/Files.h\"", false},
        {"Core/RunLog.cpp", "#include <vector>", false},
        {"Core/RunLog.cpp", "#include <unicode/locid.h>", false},
        {"Platform/Files.h", "#include \"Core/Date.h\"", true},
        {"Core/RunLog.cpp", "#include \"Tools/SystemJunk/Scan.h\"", true},
        {"Core/RunLog.cpp", "#include \"Date.h\"", true},
        {"Core/RunLog.cpp", "#include \"Platform/Posix/Calls.h\"", true},
        {"Core/RunLog.cpp", "#include <sys/stat.h>", true},
        {"Core/RunLog.cpp", "#ifdef __linux__", true},
        {"Platform/Files.h", "#include <unistd.h>", true},
        {"Platform/Posix/Files.cpp", "#include <unistd.h>", false},
        {"Platform/macOS/Trash.mm", "#include <Foundation/Foundation.h>", false},
        {"Tools/SystemJunk/Scan.cpp", "#include \"Tools/SystemJunk/Rules.h\"", false},
        {"Tools/SystemJunk/Scan.cpp", "#include \"Tools/DiskSpace/Tree.h\"", true},
        {"Tools/SystemJunk/Scan.cpp", "#include \"HelperKit/HelperClient.h\"", true},
        {"Tools/SystemJunk/Scan.cpp", "#include \"Tools/SystemJunk/work/Job.h\"", true},
        {"Tools/SystemJunk/Scan.cpp", "#include <QString>", true},
        {"Tools/SystemJunk/Scan.cpp", "#include <QtCore/qstring.h>", true},
        {"Tools/SystemJunk/work/Job.cpp", "#include \"Tools/SystemJunk/Scan.h\"", false},
        {"Tools/SystemJunk/work/Job.cpp", "#include \"HelperKit/HelperClient.h\"", false},
        {"Tools/SystemJunk/work/Job.cpp", "#include \"Automation/Offer.h\"", false},
        {"Tools/SystemJunk/work/Job.cpp", "#include \"app/Session.h\"", true},
        {"Tools/SystemJunk/work/Job.cpp", "#include \"Features/Flows/Flow.h\"", true},
        {"Tools/SystemJunk/view/Model.cpp", "#include \"Tools/SystemJunk/work/Job.h\"", false},
        {"Tools/SystemJunk/view/Model.cpp", "#include \"app/Session.h\"", false},
        {"Tools/SystemJunk/view/Model.cpp", "#include <QObject>", false},
        {"Tools/SystemJunk/view/Model.cpp", "#include <QQmlEngine>", true},
        {"Tools/SystemJunk/view/Model.cpp", "#include \"cli/Table.h\"", true},
        {"Tools/SystemJunk/command/Junk.cpp", "#include \"cli/Table.h\"", false},
        {"Tools/SystemJunk/command/Junk.cpp", "#include \"Tools/SystemJunk/view/Model.h\"", true},
        {"Tools/SystemJunk/command/Junk.cpp", "#include <QString>", true},
        {"Tools/SystemJunk/cellar/Job.cpp", "#include <vector>", true},
        {"Automation/Automation.cpp", "#include \"Tools/SystemJunk/work/Job.h\"", true},
        {"app/Session.cpp", "#include \"Tools/SystemJunk/Scan.h\"", true},
        {"app/Session.cpp", "#include \"Features/Flows/work/Runner.h\"", true},
        {"app/ActivityCenter.cpp", "#include <QObject>", false},
        {"app/ActivityCenter.cpp", "#include \"ActivityCenter.moc\"", false},
        {"app/ActivityCenter.cpp", "#include <QQmlEngine>", true},
        {"app/ActivityCenter.cpp", "#include <QtGui/QColor>", true},
        {"app/ActivityCenter.cpp", "#include \"ui/Tr.h\"", true},
        {"ui/Tr.cpp", "#include <QQmlEngine>", false},
        {"ui/Tr.cpp", "#include \"Features/Flows/view/Model.h\"", true},
        {"cli/Parser.cpp", "#include <QGuiApplication>", true},
        {"attic/old.cpp", "#include <vector>", true},
    };
    for (const auto& each : cases)
        EXPECT_EQ(layerFault(each.path, each.line).has_value(), each.isFault)
            << each.path << ": " << each.line;
}

TEST(Layers, NoArrowRunsUpOrSideways) {
    const auto files = filesUnder("src", {".h", ".cpp", ".mm"});
    ASSERT_GT(files.size(), 50u) << "the sources were not found";
    for (const auto& file : files)
        for (const auto line : linesOf(file.text))
            if (const auto fault = layerFault(file.path, line))
                ADD_FAILURE() << file.path << ": " << line << "\n" << *fault;
}

} // namespace
} // namespace vh::house
