#include "ui/WindowFixture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <cmath>

namespace vh::test {

namespace {

double lightness(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double first = lightness(a), second = lightness(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

struct Ink {
    const char* name;
    std::vector<const char*> grounds;
};

const std::vector<const char*> everyGround{"background", "surface", "sunken",
                                           "hover",      "soft",    "sidebarHover"};

/// Which colour of writing stands on which ground.
const Ink inks[] = {
    {"text", everyGround},
    {"second", everyGround},
    {"third", everyGround},
    {"accent", {"background", "surface", "sunken", "hover", "soft"}},
    {"good", {"background", "surface", "hover", "goodSoft"}},
    {"warning", {"background", "surface", "hover", "warningSoft"}},
    {"bad", {"background", "surface", "hover", "badSoft"}},
    {"accentInk", {"accent", "accentHover", "accentPressed"}},
    {"badInk", {"bad", "badHover"}},
};

class Contrast : public WindowFixture, public testing::WithParamInterface<const char*> {};

} // namespace

TEST_P(Contrast, letsEverythingBeRead) {
    constexpr double least = 4.5;
    ASSERT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
    openWindow({GetParam(), "en"});
    QQmlComponent component(qmlEngine(&window().quickWindow()));
    component.setData("import QtQuick\nimport Varnholt\nQtObject { readonly property var theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_TRUE(holder) << component.errorString().toStdString();
    const auto* theme = holder->property("theme").value<QObject*>();
    const auto color = [&](const char* name) {
        const QVariant value = theme->property(name);
        EXPECT_TRUE(value.isValid()) << name;
        return value.value<QColor>();
    };
    for (const Ink& ink : inks)
        for (const auto* ground : ink.grounds)
            EXPECT_GE(contrast(color(ink.name), color(ground)), least) << ink.name << " on " << ground;
}

INSTANTIATE_TEST_SUITE_P(BothThemes, Contrast, testing::Values("light", "dark"),
                         [](const auto& theme) { return std::string(theme.param); });

} // namespace vh::test
