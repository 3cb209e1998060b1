#pragma once

#include "ui/WindowFixture.h"

#include <string>
#include <tuple>

namespace vh::test {

using Look = std::tuple<std::string, std::string>; // appearance and language

/// A window that is looked at light and dark and in every language; see IN_EVERY_LOOK.
class EveryLook : public WindowFixture, public testing::WithParamInterface<Look> {
protected:
    ui::LookOverride look() const {
        const auto& [appearance, language] = GetParam();
        return {QString::fromStdString(appearance), QString::fromStdString(language)};
    }
};

/// What has the keyboard's Tab but no name, by its class.
QStringList namelessStops(const std::vector<QQuickItem*>& items);

} // namespace vh::test

#define IN_EVERY_LOOK(Suite)                                                                                 \
    INSTANTIATE_TEST_SUITE_P(                                                                                \
        EveryLook, Suite,                                                                                    \
        testing::Combine(testing::Values(std::string("light"), std::string("dark")),                         \
                         testing::Values(std::string("en"), std::string("es"), std::string("fr"))),          \
        [](const auto& each) { return std::get<0>(each.param) + "_" + std::get<1>(each.param); })
