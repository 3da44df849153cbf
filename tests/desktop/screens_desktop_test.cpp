#include "tests/desktop/screens_fixture.h"
#include "tests/desktop/status_item_client.h"

#include <QColor>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kestro {
namespace {

/// Opens every window on a screen of that size in pixels at that scale, and expects each to be wholly visible.
struct ScreensOnTheDesktop : ScreensFixture {
    using ScreensFixture::ScreensFixture;

    void expectWholeWindows(double scale) {
        launch({QStringLiteral("QT_SCALE_FACTOR=%1").arg(scale)});
        const QRect strip = session.strip()->frame;
        for (const auto& [word, title] : {std::pair("dashboard", dashboard), {"settings", settings}}) {
            command(word);
            ASSERT_TRUE(appears(title));
            EXPECT_TRUE(isWhole(title, strip)) << describe(*frame(title));
            session.screenshot(QStringLiteral("screens-%1x%2-%3-%4")
                                   .arg(screen.width())
                                   .arg(screen.height())
                                   .arg(scale)
                                   .arg(QString::fromLatin1(word)));
        }
        command("popover");
        ASSERT_TRUE(appears(popover));
        EXPECT_TRUE(waitUntil([&] { return screen.contains(frame(popover).value_or(QRect())); }))
            << describe(*frame(popover));
    }

    /// Expects that the screen behind the popover shows in its corner as in that of a circle's square, row by row.
    void expectRoundCorners(double scale) {
        constexpr double radius = 10;
        session.output(QStringLiteral("xsetroot"), {QStringLiteral("-solid"), QColor(Qt::magenta).name()});
        launch({QStringLiteral("QT_SCALE_FACTOR=%1").arg(scale)});
        command("popover");
        ASSERT_TRUE(appears(popover));
        const std::vector<int> expected = outsideOfCircle(radius * scale);
        std::vector<int> found;
        // Until it has risen into place.
        EXPECT_TRUE(waitUntil([&] {
            const QImage picture = session.screenshot(QStringLiteral("screens-corner-%1").arg(scale));
            found = magentaAtLeft(picture.copy(*frame(popover)), expected.size());
            return found == expected;
        })) << testing::PrintToString(found)
            << ", not " << testing::PrintToString(expected);
    }

    /// The number of pixels at the left of each row whose centres are outside of a circle in the corner.
    static std::vector<int> outsideOfCircle(double radius) {
        std::vector<int> rows;
        for (double y = radius - 0.5; y > 0; --y) {
            int outside = 0;
            while (std::hypot(radius - outside - 0.5, y) > radius) {
                ++outside;
            }
            rows.push_back(outside);
        }
        return rows;
    }

    static std::vector<int> magentaAtLeft(const QImage& picture, std::size_t rows) {
        std::vector<int> found;
        for (int y = 0; y < std::min(static_cast<int>(rows), picture.height()); ++y) {
            int x = 0;
            while (x < picture.width() && picture.pixelColor(x, y) == QColor(Qt::magenta)) {
                ++x;
            }
            found.push_back(x);
        }
        return found;
    }

    bool isWhole(const QString& title, const QRect& strip) {
        return waitUntil([&] {
            const auto found = frame(title);
            return found && screen.contains(*found) && !found->intersects(strip);
        });
    }
};

struct OnASmallScreen : ScreensOnTheDesktop {
    OnASmallScreen() : ScreensOnTheDesktop({1024, 600}) {}
};

struct OnALargeScreen : ScreensOnTheDesktop {
    OnALargeScreen() : ScreensOnTheDesktop({1920, 1080}) {}
};

struct BesideAPanel : ScreensOnTheDesktop {
    BesideAPanel() : ScreensOnTheDesktop(DesktopSession::screenSize, DesktopPanel::mate) {}
};

struct OnTwoScreens : ScreensOnTheDesktop {
    explicit OnTwoScreens(DesktopPanel panel = DesktopPanel::none) : ScreensOnTheDesktop({2560, 800}, panel) {
        monitor("left", "1280/300x800/200+0+0", "screen");
        monitor("right", "1280/300x800/200+1280+0", "none");
    }

    /// Lets a window of the program reserve space at the top of both screens, as a panel does.
    void reserveTop(const QString& title, int height) const {
        session.output(
            QStringLiteral("xprop"),
            {QStringLiteral("-id"), window(title)->identifier, QStringLiteral("-f"),
             QStringLiteral("_NET_WM_STRUT_PARTIAL"), QStringLiteral("32c"), QStringLiteral("-set"),
             QStringLiteral("_NET_WM_STRUT_PARTIAL"), QStringLiteral("0,0,%1,0,0,0,0,0,0,2559,0,0").arg(height)});
    }
};

struct OnTwoScreensWithAPanel : OnTwoScreens {
    OnTwoScreensWithAPanel() : OnTwoScreens(DesktopPanel::mate) {
        // The panel lays itself out for the screens that it finds when it starts.
        const StatusItemClient client(session);
        waitUntil([&] { return client.hasHost(); });
        session.killPanel();
        session.startPanel();
    }

    /// The area that the panel at the top reserves; null without one.
    QRect panel() const {
        QRect reserved;
        const QByteArray list = session.output(
            QStringLiteral("xprop"),
            {QStringLiteral("-root"), QStringLiteral("-notype"), QStringLiteral("_NET_CLIENT_LIST")});
        for (const QByteArray& identifier : list.mid(list.indexOf('#') + 1).split(',')) {
            const QStringList strut = session
                                          .windowProperty({QString::fromLatin1(identifier.trimmed()), {}, {}},
                                                          QStringLiteral("_NET_WM_STRUT_PARTIAL"))
                                          .split(QLatin1Char(','));
            if (strut.size() == 12 && strut[2].toInt() > 0) {
                reserved = QRect(QPoint(strut[8].toInt(), 0), QPoint(strut[9].toInt(), strut[2].toInt() - 1));
            }
        }
        return reserved;
    }
};

TEST_F(OnASmallScreen, EveryWindowIsWhollyVisible) {
    expectWholeWindows(1);
}

TEST_F(OnALargeScreen, EveryWindowIsWhollyVisibleAtOneAndAHalf) {
    expectWholeWindows(1.5);
}

TEST_F(OnALargeScreen, EveryWindowIsWhollyVisibleAtTwo) {
    expectWholeWindows(2);
}

TEST_F(OnALargeScreen, CornersAreRoundInDevicePixelsAtOneAndAHalf) {
    expectRoundCorners(1.5);
}

TEST_F(OnALargeScreen, CornersAreRoundInDevicePixelsAtTwo) {
    expectRoundCorners(2);
}

TEST_F(OnTwoScreens, WindowsReturnWhenTheirScreenIsUnplugged) {
    launch();
    const QRect strip = session.strip()->frame;
    for (const auto& [word, title] : {std::pair("dashboard-shrink", dashboard), {"settings", settings}}) {
        command(word);
        ASSERT_TRUE(appears(title));
        ASSERT_TRUE(moves(title, {1500, 100})) << describe(*frame(title));
    }

    session.output(QStringLiteral("xrandr"), {QStringLiteral("--delmonitor"), QStringLiteral("right")});

    for (const QString& title : {dashboard, settings}) {
        EXPECT_TRUE(waitUntil([&] {
            const QRect now = frame(title).value_or(QRect());
            return QRect(0, 0, 1280, 800).contains(now) && !now.intersects(strip);
        })) << describe(*frame(title));
    }
}

TEST_F(BesideAPanel, WindowsMakeRoomForTheStripWhenThePanelEnds) {
    launch();
    command("settings");
    ASSERT_TRUE(appears(settings));
    ASSERT_TRUE(moves(settings, {screen.width() - frame(settings)->width(), 30})) << describe(*frame(settings));

    session.killPanel();
    ASSERT_TRUE(session.waitFor([&] { return session.strip().has_value(); }));

    EXPECT_TRUE(isWhole(settings, session.strip()->frame)) << describe(*frame(settings));
    session.screenshot(QStringLiteral("screens-strip-above-settings"));
}

TEST_F(OnTwoScreens, StripAndWindowsKeepClearOfAPanel) {
    launch();
    for (const auto& [word, title] : {std::pair("dashboard", dashboard), {"settings", settings}}) {
        command(word);
        ASSERT_TRUE(appears(title));
    }
    ASSERT_TRUE(moves(settings, {100, 10})) << describe(*frame(settings));

    reserveTop(dashboard, 60);

    EXPECT_TRUE(waitUntil([&] { return session.strip().value_or(DesktopWindow()).frame.top() == 68; }))
        << describe(session.strip()->frame);
    EXPECT_TRUE(waitUntil([&] { return frame(settings).value_or(QRect()).top() >= 60; }))
        << describe(*frame(settings));
}

TEST_F(OnTwoScreensWithAPanel, NothingCoversThePanel) {
    launch();
    ASSERT_TRUE(waitUntil([&] { return !panel().isNull(); }));
    const int height = panel().height();

    command("dashboard");
    ASSERT_TRUE(appears(dashboard));
    ASSERT_TRUE(moves(dashboard, {10, 200}));
    doubleClick(frame(dashboard)->topLeft() + QPoint(300, 12));
    EXPECT_TRUE(waitUntil([&] { return frame(dashboard)->width() == 1280 && frame(dashboard)->top() == height; }))
        << describe(*frame(dashboard));

    command("popover");
    ASSERT_TRUE(appears(popover));
    EXPECT_TRUE(waitUntil([&] { return frame(popover).value_or(QRect()).top() == height + 6; }))
        << describe(*frame(popover));
    session.screenshot(QStringLiteral("screens-two-with-a-panel"));
    session.key(QStringLiteral("Escape"));
    ASSERT_TRUE(disappears(popover));

    // The item, to the left of the clock.
    session.click({panel().right() - 220, height / 2});
    ASSERT_TRUE(appears(popover));
    EXPECT_TRUE(waitUntil([&] { return frame(popover).value_or(QRect()).top() == height + 6; }))
        << describe(*frame(popover));
}

}  // namespace
}  // namespace kestro
