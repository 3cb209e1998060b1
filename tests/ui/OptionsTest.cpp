#include "ui/Options.h"

#include <gtest/gtest.h>

namespace vh::ui {

using Act = Options::Act;

TEST(Options, sayWhatTheCommandLineAsksFor) {
    struct Case {
        QStringList arguments;
        Act act;
        QString page;
    };
    const Case cases[] = {
        {{}, Act::openWindow, ""},
        {{"--page", "activity"}, Act::openWindow, "activity"},
        {{"--screenshot", "home", "a.png"}, Act::takeScreenshot, "home"},
        {{"--dark", "--screenshot", "home", "--size", "960x640", "a.png"}, Act::takeScreenshot, "home"},
        {{"--help"}, Act::printHelp, ""},
        {{"--version"}, Act::printVersion, ""},
        {{"--screenshot", "home"}, Act::refuse, ""},
        {{"--screenshot", "home", "a.png", "b.png"}, Act::refuse, ""},
        {{"varnholt://flow/run?id=1"}, Act::openWindow, ""},
        {{"varnholt://a", "varnholt://b"}, Act::refuse, ""},
        {{"home"}, Act::refuse, ""},
        {{"--colour"}, Act::refuse, ""},
        {{"--page"}, Act::refuse, ""},
        {{"--size", "big"}, Act::refuse, ""},
        {{"--size", "0x0"}, Act::refuse, ""},
        {{"--language", "de"}, Act::refuse, ""},
    };
    for (const auto& test : cases) {
        const auto options = Options::of(QStringList("varnholt-app") + test.arguments);
        SCOPED_TRACE(test.arguments.join(' ').toStdString());
        EXPECT_EQ(options.act, test.act);
        EXPECT_EQ(options.page, test.page);
        EXPECT_EQ(options.text.isEmpty(), test.act != Act::refuse && test.act != Act::printHelp);
    }
}

TEST(Options, showHelpAsItIsWritten) {
    EXPECT_TRUE(Options::of({"varnholt-app", "--help"}).text.contains(QStringLiteral("varnholt://\u2026]")));
}

TEST(Options, readTheLook) {
    const auto options = Options::of({"varnholt-app", "--dark", "--language", "fr", "--size", "960x640"});
    EXPECT_EQ(options.appearance, "dark");
    EXPECT_EQ(options.language, "fr");
    EXPECT_EQ(options.size, QSize(960, 640));
    EXPECT_EQ(Options::of({"varnholt-app", "--light"}).appearance, "light");
    EXPECT_EQ(Options::of({"varnholt-app"}).appearance, "");
}

} // namespace vh::ui
