#include "tests/desktop/desktop_session.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(DesktopSession, ReportsTheOutputOfAProgramThatFailedToStart) {
    DesktopSession session;
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const QProcess& kestro = session.startKestro({QStringLiteral("DISPLAY=:60999")});
    ASSERT_TRUE(waitUntil([&] { return kestro.state() == QProcess::NotRunning; }));

    EXPECT_NONFATAL_FAILURE(session.waitFor([] { return false; }), "could not connect to display :60999");
}

}  // namespace
}  // namespace kestro
