#include "ui/Window.h"

#include <QAccessible>
#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    vh::ui::useNoDisplay();
    QGuiApplication application(argc, argv);
    QAccessible::setActive(true);
    return RUN_ALL_TESTS();
}
