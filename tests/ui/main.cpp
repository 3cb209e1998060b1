#include "ui/Window.h"

#include <QAccessible>
#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    vh::ui::useNoDisplay();
    // Pages without byte code of their own would leave some among the caches of the home that is tested.
    qputenv("QML_DISABLE_DISK_CACHE", "1");
    QGuiApplication application(argc, argv);
    QAccessible::setActive(true);
    return RUN_ALL_TESTS();
}
