#include "ui/WindowPlace.h"

#include <gtest/gtest.h>

namespace vh::ui {

TEST(WindowPlace, StaysWhereItWasLeftAsLongAsItCanBeReachedThere) {
    const QRect large(0, 24, 2560, 1416), second(2560, 0, 1920, 1080), small(0, 0, 1024, 700);
    struct Case {
        QRect wanted;
        QList<QRect> areas;
        QRect place;
    };
    const Case cases[] = {
        {{100, 100, 1280, 820}, {large}, {100, 100, 1280, 820}},
        {{2700, 100, 1280, 820}, {large, second}, {2700, 100, 1280, 820}},
        {{2700, 100, 1280, 820}, {large}, {1280, 100, 1280, 820}},         // the second screen is gone
        {{-1200, 100, 1280, 820}, {large}, {0, 100, 1280, 820}},           // too little of it is left
        {{-1000, 100, 1280, 820}, {large}, {-1000, 100, 1280, 820}},       // enough of it is left
        {{100, -200, 1280, 820}, {large}, {100, 24, 1280, 820}},           // its title is out of reach
        {{300, 200, 1600, 1000}, {small}, {0, 0, 1024, 700}},              // the screen is smaller now
        {{2000000000, -2000000000, 960, 640}, {small}, {64, 0, 960, 640}}, // settings from anywhere
        {{0, 0, 960, 640}, {}, {}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(fittedPlace(each.wanted, each.areas), each.place)
            << each.wanted.x() << " " << each.wanted.y() << " " << each.wanted.width();
}

} // namespace vh::ui
