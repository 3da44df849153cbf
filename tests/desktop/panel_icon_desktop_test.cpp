#include "tests/desktop/desktop_session.h"
#include "tests/desktop/status_item_client.h"
#include "tests/support/fake_service.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>

namespace kestro {
namespace {

/// True if an icon has the memory bar at its left: pixels over most of its height, which no symbol has there.
bool hasValues(const QImage& icon) {
    int painted = 0;
    for (int row = 0; row < icon.height(); ++row) {
        painted += qAlpha(icon.pixel(2, row)) > 40 ? 1 : 0;
    }
    return painted >= 16;
}

/// Whether the opaque pixels of an icon are bright, as they should be on a dark panel.
bool isBright(const QImage& icon) {
    int bright = 0;
    int dark = 0;
    for (int row = 0; row < icon.height(); ++row) {
        for (int column = 0; column < icon.width(); ++column) {
            const QRgb pixel = icon.pixel(column, row);
            if (qAlpha(pixel) > 200) {
                (qGray(pixel) > 127 ? bright : dark) += 1;
            }
        }
    }
    return bright > dark;
}

enum class PanelGround { opaque, none };

/// The panel's right half once the panel has been drawn: covers the screen's edge, unless it has no ground, and
/// changes no more.
QImage drawnPanel(const DesktopSession& session, const QString& name, PanelGround ground = PanelGround::opaque) {
    const QRect half(DesktopSession::screenSize.width() / 2, 0, DesktopSession::screenSize.width() / 2, 24);
    QImage last;
    waitUntil([&] {
        const QImage now = session.screenshot(name).copy(half);
        const bool isCovered = ground == PanelGround::none || now.pixelColor(0, 0) != QColor(Qt::black);
        const bool isDrawn = now == last && isCovered;
        last = now;
        return isDrawn;
    });
    return last;
}

/// Waits until the main item has an icon that fulfils the condition. A panel that is starting may lose its items
/// once and get new ones.
bool hasIcon(const DesktopSession& session, const StatusItemClient& client,
             const std::function<bool(const QImage&)>& condition) {
    return session.waitFor([&] {
        const auto item = client.item(QStringLiteral("kestro-main"));
        const QImage icon = item ? client.icon(*item, 22) : QImage();
        return !icon.isNull() && condition(icon);
    });
}

/// On panels without labels, the icon contains the values and the panel shows it.
void expectValuesInTheIcon(DesktopPanel panel, const QString& picture, PanelGround ground) {
    DesktopSession session(panel);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    ASSERT_TRUE(waitUntil([&] { return client.hasHost(); }));
    const QImage empty = drawnPanel(session, picture, ground);

    session.startKestro();
    EXPECT_TRUE(hasIcon(session, client, hasValues));
    EXPECT_TRUE(waitUntil([&] { return drawnPanel(session, picture, ground) != empty; }));
}

TEST(StatusBarOnMate, ShowsABareIconWhereButtonsShowNoIcons) {
    DesktopSession session(DesktopPanel::mate);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    ASSERT_TRUE(waitUntil([&] { return client.hasHost(); }));
    session.killPanel();
    session.writeFile(QStringLiteral("config/gtk-3.0/settings.ini"), "[Settings]\ngtk-button-images=0\n");
    session.startPanel();
    ASSERT_TRUE(waitUntil([&] { return client.hasHost(); }));
    session.writePreferences(R"({"kestro.showDedicatedKeepAwakeItem": false,
                                 "kestro.activeMenubarModules": {"json": ["appIcon"]}})");
    const QString picture = QStringLiteral("mate-panel-bare-icon");
    const QImage empty = drawnPanel(session, picture);

    session.startKestro();

    ASSERT_FALSE(client.waitForItem().isEmpty());
    EXPECT_TRUE(waitUntil([&] { return drawnPanel(session, picture) != empty; }));
}

TEST(StatusBarOnXfce, FollowsThePanelsOwnSettingOutsideAnXfceSession) {
    DesktopSession session(DesktopPanel::xfce);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    ASSERT_TRUE(waitUntil([&] { return client.hasHost(); }));

    session.startKestro({QStringLiteral("XDG_CURRENT_DESKTOP=openbox")});
    EXPECT_TRUE(hasIcon(session, client, [](const QImage& icon) { return hasValues(icon) && isBright(icon); }));

    session.output(QStringLiteral("xfconf-query"),
                   {QStringLiteral("-c"), QStringLiteral("xfce4-panel"), QStringLiteral("-p"),
                    QStringLiteral("/panels/dark-mode"), QStringLiteral("-s"), QStringLiteral("false")});
    EXPECT_TRUE(hasIcon(session, client, [](const QImage& icon) { return hasValues(icon) && !isBright(icon); }));
}

TEST(StatusBarOnXfce, PaintsDarkIconsWhereTheThemeHasNoDarkVariant) {
    const QString settingsDaemon = QStringLiteral("/usr/bin/xfsettingsd");
    if (!QFileInfo::exists(settingsDaemon)) {
        GTEST_SKIP() << "xfsettingsd is not installed";
    }
    DesktopSession session(DesktopPanel::xfce);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    ASSERT_TRUE(waitUntil([&] { return client.hasHost(); }));
    session.writeFile(QStringLiteral("config/xfce4/xfconf/xfce-perchannel-xml/xsettings.xml"),
                      R"(<channel name="xsettings" version="1.0"><property name="Net" type="empty">
                         <property name="ThemeName" type="string" value="not installed"/></property></channel>)");
    session.start(settingsDaemon, {QStringLiteral("--no-daemon")});
    const QString picture = QStringLiteral("xfce4-panel-light");
    ASSERT_TRUE(waitUntil([&] { return qGray(drawnPanel(session, picture).pixel(0, 0)) > 127; }));

    session.startKestro();
    EXPECT_TRUE(hasIcon(session, client, [](const QImage& icon) { return hasValues(icon) && !isBright(icon); }));
}

TEST(StatusBarOnXfce, PaintsTheValuesIntoTheIcon) {
    expectValuesInTheIcon(DesktopPanel::xfce, QStringLiteral("xfce4-panel"), PanelGround::opaque);
}

TEST(StatusBarOnLxqt, FollowsTheColourPreferenceOfAPortalThatStartsLater) {
    DesktopSession session(DesktopPanel::lxqt);
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    const StatusItemClient client(session);
    ASSERT_TRUE(waitUntil([&] { return client.hasHost(); }));
    session.startKestro();
    EXPECT_TRUE(hasIcon(session, client, hasValues));

    const test::FakeService portal(session.connect(DesktopSession::Bus::session),
                                   QStringLiteral("org.freedesktop.portal.Desktop"));
    for (const bool isDark : {true, false}) {
        QDBusMessage changed = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                          QStringLiteral("org.freedesktop.portal.Settings"),
                                                          QStringLiteral("SettingChanged"));
        changed.setArguments({QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                              QVariant::fromValue(QDBusVariant(isDark ? 1U : 2U))});
        portal.connection().send(changed);

        EXPECT_TRUE(hasIcon(session, client, [isDark](const QImage& icon) {
            return hasValues(icon) && isBright(icon) == isDark;
        })) << isDark;
    }
}

TEST(StatusBarOnLxqt, PaintsTheValuesIntoTheIcon) {
    expectValuesInTheIcon(DesktopPanel::lxqt, QStringLiteral("lxqt-panel"), PanelGround::none);
}

}  // namespace
}  // namespace kestro
