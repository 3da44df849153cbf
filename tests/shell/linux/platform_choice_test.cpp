#include "shell/linux/platform_choice.h"

#include <QByteArray>
#include <QtGlobal>

#include <gtest/gtest.h>

#include <map>

namespace kestro {
namespace {

/// Restores the variables afterwards.
struct PlatformChoice : testing::Test {
    ~PlatformChoice() override {
        for (const auto& [name, value] : before) {
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        }
    }

    std::map<const char*, QByteArray> before{{"QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM")},
                                             {"DISPLAY", qgetenv("DISPLAY")}};
};

TEST_F(PlatformChoice, IsTheToolkitsWithoutAnX11Server) {
    qunsetenv("QT_QPA_PLATFORM");
    for (const char* display : {"", ":65000"}) {
        qputenv("DISPLAY", display);

        choosePlatform();

        EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) << display;
    }
}

TEST_F(PlatformChoice, IsTheUsersWhereMade) {
    qputenv("QT_QPA_PLATFORM", "wayland");

    choosePlatform();

    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), "wayland");
}

}  // namespace
}  // namespace kestro
