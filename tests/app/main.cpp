#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // No test reaches the bus of the person who runs it; those that need a bus start one.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
