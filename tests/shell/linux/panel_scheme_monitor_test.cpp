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

TEST_F(PanelSchemeMonitorTest, AsksAnXfcePanelOutsideAnXfceSessionForItsOwnSetting) {
    hostProcess = QStringLiteral("panel-2-systray");
    test::FakeService settings(bus.connect(), QStringLiteral("org.xfce.Xfconf"));
    settings.answer(QStringLiteral("GetProperty"), [](const QDBusMessage& call) {
        return call.createReply(QVariant::fromValue(QDBusVariant(true)));
    });
    startWatcher();
    startMonitors();

    EXPECT_TRUE(waitUntil([&] { return scheme->look() == PanelLook{PanelScheme::dark, true}; }));
    EXPECT_THAT(settings.calls(), testing::ElementsAre(R"(GetProperty("xfce4-panel", "/panels/dark-mode"))"));
}

}  // namespace
}  // namespace kestro

#include "panel_scheme_monitor_test.moc"
