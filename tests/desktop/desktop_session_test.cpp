#include "tests/desktop/desktop_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(DesktopSession, ReportsTheOutputOfAProgramThatFailedToStart) {
    DesktopSession session;
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const QProcess& kestro = session.startKestro({QStringLiteral("DISPLAY=:60999")});
    ASSERT_TRUE(waitUntil([&] { return kestro.state() == QProcess::NotRunning; }));

    try {
        session.waitFor([] { return false; });
        FAIL() << "waits for a program that has ended";
    } catch (const std::runtime_error& failure) {
        EXPECT_THAT(failure.what(), testing::HasSubstr("cannot open a display: DISPLAY is \":60999\""));
    }
}

}  // namespace
}  // namespace kestro
