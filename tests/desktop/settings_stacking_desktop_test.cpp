#include "tests/desktop/shell_fixture.h"

#include <QByteArray>
#include <QRect>
#include <QStringList>

#include <gtest/gtest.h>

#include <utility>

namespace kestro {
namespace {

/// Reads the order and the focus of the windows from the window manager.
struct StackingOnTheDesktop : ShellFixture {
    /// The windows from bottom to top, as the window manager has stacked them.
    QStringList stacking() const {
        QStringList titles;
        const QByteArray list = session.output(
            QStringLiteral("xprop"),
            {QStringLiteral("-root"), QStringLiteral("-notype"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
        for (const QByteArray& identifier : list.mid(list.indexOf('#') + 1).split(',')) {
            const quint32 number = identifier.trimmed().toUInt(nullptr, 16);
            for (const DesktopWindow& window : session.windows()) {
                if (window.identifier.toUInt() == number &&
                    (window.title == dashboard || window.title == settings)) {
                    titles.append(window.title);
                }
            }
        }
        return titles;
    }

    /// Whether the window manager has given the window the keyboard, which a click does after raising it.
    bool isActive(const QString& title) const {
        const auto found = window(title);
        return found && session.output(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow")}).trimmed() ==
                            found->identifier.toLatin1();
    }

    const QStringList dashboardBelowSettings{dashboard, settings};
    const QRect screen{QPoint(), DesktopSession::screenSize};
};

TEST_F(StackingOnTheDesktop, SettingsStayAboveAPinnedDashboard) {
    launch();
    command("dashboard");
    ASSERT_TRUE(appears(dashboard));
    session.key(QStringLiteral("ctrl+p"));
    ASSERT_TRUE(waitUntil([&] { return hasState(dashboard, "_NET_WM_STATE_ABOVE"); }));

    command("settings");
    ASSERT_TRUE(appears(settings));
    EXPECT_TRUE(waitUntil([&] { return stacking() == dashboardBelowSettings; }));
}

TEST_F(StackingOnTheDesktop, SettingsStayAboveADashboardThatIsClicked) {
    launch();
    for (const auto& [word, title] : {std::pair("dashboard", dashboard), {"settings", settings}}) {
        command(word);
        ASSERT_TRUE(appears(title));
    }
    ASSERT_TRUE(waitUntil([&] { return isActive(settings); }));

    session.click(frame(dashboard)->topLeft() + QPoint(5, 100));
    ASSERT_TRUE(waitUntil([&] { return isActive(dashboard); }));

    EXPECT_EQ(stacking(), dashboardBelowSettings);
}

TEST_F(StackingOnTheDesktop, SettingsStayAboveADashboardInFullScreen) {
    launch();
    command("settings");
    ASSERT_TRUE(appears(settings));

    command("dashboard-fullscreen");
    ASSERT_TRUE(appears(dashboard));
    ASSERT_TRUE(waitUntil([&] {
        return hasState(dashboard, "_NET_WM_STATE_FULLSCREEN") && frame(dashboard) == screen &&
               isActive(dashboard);
    }));

    EXPECT_EQ(stacking(), dashboardBelowSettings);
    session.screenshot(QStringLiteral("screens-settings-above-full-screen"));
}

TEST_F(StackingOnTheDesktop, SettingsHaveNoMinimisedParent) {
    const auto hasParent = [this] {
        return session.windowProperty(*window(settings), QStringLiteral("WM_TRANSIENT_FOR"))
            .contains(QStringLiteral("window id"));
    };
    launch();
    command("dashboard");
    ASSERT_TRUE(appears(dashboard));
    session.output(QStringLiteral("xdotool"), {QStringLiteral("windowminimize"), window(dashboard)->identifier});
    ASSERT_TRUE(disappears(dashboard));

    command("settings");
    ASSERT_TRUE(appears(settings));
    finishCommands();
    EXPECT_FALSE(hasParent());

    command("dashboard");
    ASSERT_TRUE(appears(dashboard));
    EXPECT_TRUE(waitUntil(hasParent));
    command("hide");
    ASSERT_TRUE(disappears(dashboard));
    EXPECT_TRUE(waitUntil([&] { return !hasParent(); }));
}

}  // namespace
}  // namespace kestro
