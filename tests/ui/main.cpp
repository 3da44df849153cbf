#include "tests/support/sealed_environment.h"

#include <QApplication>
#include <QStyleFactory>

#include <gtest/gtest.h>

// Runs every view test without a screen and in one fixed style, regardless of the desktop.
int main(int argc, char** argv) {
    const kestro::SealedEnvironment environment;
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
