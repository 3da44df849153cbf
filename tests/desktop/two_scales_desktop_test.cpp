#include "tests/desktop/screens_fixture.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace kestro {
namespace {

struct OnScreensOfTwoScales : ScreensFixture {
    /// The command that shows a window, its title and its size in points.
    const std::vector<std::tuple<const char*, QString, QSize>> windows = {
        {"dashboard-shrink", dashboard, {800, 460}}, {"settings", settings, {860, 750}}};

    OnScreensOfTwoScales() : ScreensFixture({3840, 1600}) {
        monitor("left", "1280/300x800/200+0+0", "screen");
        monitor("right", "2560/300x1600/200+1280+0", "none");
    }

    bool shows(const char* word, const QString& title, QSize points) {
        command(word);
        return appears(title) && session.waitFor([&] { return frame(title).value_or(QRect()).size() == points; });
    }

    /// Moves the window and waits for the size in pixels that it then has.
    void expectSizeAt(const QString& title, int x, QSize expected) {
        EXPECT_TRUE(session.waitFor([&] {
            // Its opening motion may still move it back.
            const auto moved = window(title);
            if (moved && moved->frame.x() != x) {
                session.output(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), moved->identifier,
                                                           QString::number(x), QStringLiteral("47")});
            }
            const QRect now = frame(title).value_or(QRect());
            return now.x() == x && now.size() == expected;
        })) << describe(frame(title).value_or(QRect()));
    }
};

TEST_F(OnScreensOfTwoScales, WindowsKeepTheirSizeInPoints) {
    launch({QStringLiteral("QT_SCREEN_SCALE_FACTORS=left=1;right=2")});
    for (const auto& [word, title, points] : windows) {
        ASSERT_TRUE(shows(word, title, points));
        expectSizeAt(title, 1900, points * 2);
        session.screenshot(QStringLiteral("screens-two-scales-") + QString::fromLatin1(word));
        expectSizeAt(title, 20, points);
    }
}

// A motion corrects the position of its window once more after it has ended.
TEST_F(OnScreensOfTwoScales, TheDashboardKeepsItsSizeWhenMovedAtTheEndOfAMotion) {
    launch({QStringLiteral("QT_SCREEN_SCALE_FACTORS=left=1;right=2")});
    for (int pause = 0; pause <= 120; pause += 30) {
        command("dashboard-resize");
        ASSERT_TRUE(appears(dashboard));
        ASSERT_TRUE(session.waitFor([&] { return frame(dashboard).value_or(QRect()).width() > 1000; }));
        ASSERT_TRUE(shows("dashboard-shrink", dashboard, {800, 460}));
        // At various moments.
        session.output(QStringLiteral("sleep"), {QString::number(pause * 0.001)});
        session.output(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), window(dashboard)->identifier,
                                                   QStringLiteral("1900"), QStringLiteral("47")});
        expectSizeAt(dashboard, 1900, QSize(800, 460) * 2);
        expectSizeAt(dashboard, 20, {800, 460});
    }
}

}  // namespace
}  // namespace kestro
