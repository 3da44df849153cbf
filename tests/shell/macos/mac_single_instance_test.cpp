#include "shell/macos/mac_single_instance.h"

#include "shell/macos/quit_requests.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace kestro {
namespace {

using namespace std::chrono_literals;

struct MacSingleInstanceTest : testing::Test {
    QTemporaryDir folder;
    QString lockFile = folder.filePath(QStringLiteral("instance.lock"));
    int shown = 0;
    std::function<void()> showDashboard = [this] { ++shown; };
};

TEST_F(MacSingleInstanceTest, TheFirstIsAloneUntilItReleases) {
    MacSingleInstance first(lockFile, showDashboard);
    EXPECT_TRUE(first.isFirst());
    EXPECT_EQ(shown, 0);

    const MacSingleInstance second(lockFile, showDashboard, 0ms);
    EXPECT_FALSE(second.isFirst());
    EXPECT_EQ(shown, 1);
    first.release();
    const MacSingleInstance third(lockFile, showDashboard, 0ms);

    EXPECT_TRUE(third.isFirst());
    EXPECT_EQ(shown, 1);
}

TEST_F(MacSingleInstanceTest, ReplacesAnInstanceThatIsEnding) {
    auto first = std::make_unique<MacSingleInstance>(lockFile, showDashboard);

    const MacSingleInstance second(
        lockFile, [&] { first.reset(); }, 0ms);

    EXPECT_TRUE(second.isFirst());
}

TEST_F(MacSingleInstanceTest, IsFirstWhereTheLockCannotBeWritten) {
    const QString nowhere = QStringLiteral("/dev/null/instance.lock");
    const MacSingleInstance first(nowhere, showDashboard);
    const MacSingleInstance second(nowhere, showDashboard);

    EXPECT_TRUE(first.isFirst());
    EXPECT_TRUE(second.isFirst());
    EXPECT_EQ(shown, 0);
}

TEST(QuitRequests, EndTheProgramInPlaceOfTheWindows) {
    int ends = 0;
    const QuitRequests requests([&] { ++ends; });

    QEvent quit(QEvent::Quit);
    quit.ignore();
    QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);

    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(quit.isAccepted());
}

}  // namespace
}  // namespace kestro
