#include "tests/support/sealed_environment.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QStyleFactory>

// Every test of the views runs without a screen and with the same style, whatever desktop it is started on.
int main(int argc, char** argv) {
    const kestro::SealedEnvironment environment;
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
