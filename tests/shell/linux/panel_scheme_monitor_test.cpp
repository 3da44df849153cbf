#include "shell/linux/panel_scheme_monitor.h"

#include "tests/shell/linux/notifier/sni_fixture.h"
#include "tests/support/fake_service.h"

#include <QDBusConnection>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

/// A settings portal that knows only the colour scheme.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(const QDBusConnection& connection) : connection_(connection) {
        connection_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                   QDBusConnection::ExportScriptableContents);
        connection_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    QVariant value = 1U;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString&, const QString&) {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }

Q_SIGNALS:
    Q_SCRIPTABLE void SettingChanged(const QString& area, const QString& key, const QDBusVariant& value);

private:
    QDBusConnection connection_;
};

using PanelSchemeMonitorTest = SniFixture;

TEST_F(PanelSchemeMonitorTest, FollowsTheDesktopsColourPreference) {
    FakePortal portal(panel.connection());
    startMonitors();
    ASSERT_TRUE(waitUntil([&] { return scheme->look().scheme == PanelScheme::dark; }));

    Q_EMIT portal.SettingChanged(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                                 QDBusVariant(2U));

    EXPECT_TRUE(waitUntil([&] { return scheme->look().scheme == PanelScheme::light; }));
}

TEST_F(PanelSchemeMonitorTest, IgnoresOtherSettingsAndValuesOfAnotherType) {
    FakePortal portal(panel.connection());
    startMonitors();
    ASSERT_TRUE(waitUntil([&] { return scheme->look().scheme == PanelScheme::dark; }));
    int changes = 0;
    QObject::connect(scheme.get(), &PanelSchemeMonitor::lookChanged, [&] { ++changes; });

    const QString area = QStringLiteral("org.freedesktop.appearance");
    Q_EMIT portal.SettingChanged(area, QStringLiteral("accent-color"), QDBusVariant(2U));
    Q_EMIT portal.SettingChanged(area, QStringLiteral("color-scheme"), QDBusVariant(QStringLiteral("dark")));
    Q_EMIT portal.SettingChanged(area, QStringLiteral("color-scheme"), QDBusVariant(1U));

    // The text counts as no preference, so that the scheme changes exactly twice.
    EXPECT_TRUE(waitUntil([&] { return changes == 2; }));
    EXPECT_EQ(scheme->look().scheme, PanelScheme::dark);
}

/// Xfce's settings, with a panel that prefers the dark variant of its theme.
class XfceSettings : public test::FakeService {
public:
    XfceSettings(const QDBusConnection& connection, const QString& theme)
        : FakeService(connection, QStringLiteral("org.xfce.Xfconf"),
                      {{QStringLiteral("GetProperty"), [theme](const QDBusMessage& call) {
                            const bool isTheme = call.arguments().value(0) == QStringLiteral("xsettings");
                            const QVariant value = isTheme ? QVariant(theme) : QVariant(true);
                            return call.createReply(QVariant::fromValue(QDBusVariant(value)));
                        }}}) {}

    void change(const QString& channel, const QString& property, const QVariant& value) const {
        send(QStringLiteral("PropertyChanged"), {channel, property, QVariant::fromValue(QDBusVariant(value))});
    }
    void reset(const QString& channel, const QString& property) const {
        send(QStringLiteral("PropertyRemoved"), {channel, property});
    }

private:
    void send(const QString& member, const QVariantList& arguments) const {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/xfce/Xfconf"),
                                                         QStringLiteral("org.xfce.Xfconf"), member);
        signal.setArguments(arguments);
        connection().send(signal);
    }
};

constexpr PanelLook knownDark{PanelScheme::dark, true};
constexpr PanelLook knownLight{PanelScheme::light, true};
const QString settingsDaemon = QStringLiteral("org.xfce.SettingsDaemon");

TEST_F(PanelSchemeMonitorTest, AsksAnXfcePanelOutsideAnXfceSessionForItsOwnSetting) {
    hostProcess = QStringLiteral("panel-2-systray");
    const XfceSettings settings(bus.connect(), QStringLiteral("not installed"));
    startWatcher();
    startMonitors();

    EXPECT_TRUE(waitUntil([&] { return scheme->look() == knownDark; }));
    EXPECT_THAT(settings.calls(), testing::ElementsAre(R"(GetProperty("xsettings", "/Net/ThemeName"))",
                                                       R"(GetProperty("xfce4-panel", "/panels/dark-mode"))"));
}

TEST_F(PanelSchemeMonitorTest, KnowsThatTheThemeOfAnXfceSessionHasNoDarkVariant) {
    hostProcess = QStringLiteral("xfce4-panel");
    const XfceSettings settings(bus.connect(), QStringLiteral("not installed"));
    const test::FakeService daemon(bus.connect(), settingsDaemon);
    startWatcher();
    startMonitors();
    EXPECT_TRUE(waitUntil([&] { return scheme->look() == knownLight; }));

    settings.change(QStringLiteral("xsettings"), QStringLiteral("/Net/ThemeName"), QStringLiteral("Adwaita"));
    EXPECT_TRUE(waitUntil([&] { return scheme->look() == knownDark; }));

    settings.change(QStringLiteral("xfce4-panel"), QStringLiteral("/panels/dark-mode"), false);
    EXPECT_TRUE(waitUntil([&] { return scheme->look() == knownLight; }));

    settings.reset(QStringLiteral("xfce4-panel"), QStringLiteral("/panels/dark-mode"));
    EXPECT_TRUE(waitUntil([&] { return !scheme->look().isKnown; }));
}

TEST_F(PanelSchemeMonitorTest, FollowsTheSettingsDaemonOfXfce) {
    hostProcess = QStringLiteral("xfce4-panel");
    const XfceSettings settings(bus.connect(), QStringLiteral("not installed"));
    startWatcher();
    startMonitors();
    EXPECT_TRUE(waitUntil([&] { return scheme->look() == knownDark; }));

    test::FakeService daemon(bus.connect(), settingsDaemon);
    EXPECT_TRUE(waitUntil([&] { return scheme->look() == knownLight; }));

    daemon.vanish();
    EXPECT_TRUE(waitUntil([&] { return scheme->look() == knownDark; }));
}

}  // namespace
}  // namespace kestro

#include "panel_scheme_monitor_test.moc"
