#include <gtest/gtest.h>

#include <QApplication>
#include <QStyleFactory>

// Every test of the views runs without a screen and with the same style, whatever desktop it is started on.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "1");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
