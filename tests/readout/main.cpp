#include "tests/support/sealed_environment.h"

#include <QApplication>

#include <gtest/gtest.h>

// Tests that need a bus start one.
int main(int argc, char** argv) {
    const kestro::SealedEnvironment environment;
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
