#include "shell/linux/accessibility_monitor.h"

#include "tests/shell/linux/bus_client.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <QMap>

#include <gtest/gtest.h>

namespace kestro {
namespace {

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString desktop = QStringLiteral("org.gnome.desktop.interface");

/// A settings portal with the given settings.
class PortalOfSettings : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit PortalOfSettings(const QDBusConnection& connection) : connection_(connection) {
        connection_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                   QDBusConnection::ExportScriptableContents);
        connection_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    QMap<QString, QVariant> values;
    int reads = 0;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString& area, const QString& key) {
        ++reads;
        return QDBusVariant(QVariant::fromValue(QDBusVariant(values.value(area + QLatin1Char('/') + key, 0U))));
    }

Q_SIGNALS:
    Q_SCRIPTABLE void SettingChanged(const QString& area, const QString& key, const QDBusVariant& value);

private:
    QDBusConnection connection_;
};

class AccessibilityMonitorTest : public testing::Test {
protected:
    ~AccessibilityMonitorTest() override {
        KestroTheme::setHighContrast(false);
        motion::setReduced(false);
    }

    /// Only the desktop's setting matters: the style of these tests has animations.
    static bool isStill() { return motion::duration(motion::window) == 0; }

    PrivateBus bus;
    BusClient desktopSide{bus.address()};
    BusClient ownSide{bus.address()};
};

TEST_F(AccessibilityMonitorTest, AppliesTheDesktopsSettingsAtStartup) {
    PortalOfSettings portal(desktopSide.connection());
    portal.values[QStringLiteral("org.freedesktop.appearance/contrast")] = 1U;
    portal.values[QStringLiteral("org.gnome.desktop.interface/enable-animations")] = false;

    const AccessibilityMonitor monitor(ownSide.connection());

    EXPECT_TRUE(waitUntil([] { return KestroTheme::isHighContrast() && isStill(); }));
}

TEST_F(AccessibilityMonitorTest, FollowsChanges) {
    PortalOfSettings portal(desktopSide.connection());
    const AccessibilityMonitor monitor(ownSide.connection());
    ASSERT_TRUE(waitUntil([&] { return portal.reads == 4; }));

    Q_EMIT portal.SettingChanged(QStringLiteral("org.gnome.desktop.a11y.interface"),
                                 QStringLiteral("high-contrast"), QDBusVariant(true));
    EXPECT_TRUE(waitUntil([] { return KestroTheme::isHighContrast(); }));
    Q_EMIT portal.SettingChanged(QStringLiteral("org.gnome.desktop.a11y.interface"),
                                 QStringLiteral("high-contrast"), QDBusVariant(false));
    EXPECT_TRUE(waitUntil([] { return !KestroTheme::isHighContrast(); }));
    Q_EMIT portal.SettingChanged(appearance, QStringLiteral("reduced-motion"), QDBusVariant(1U));
    EXPECT_TRUE(waitUntil([] { return isStill(); }));
}

TEST_F(AccessibilityMonitorTest, IgnoresValuesOfAnotherTypeAndOtherSettings) {
    PortalOfSettings portal(desktopSide.connection());
    const AccessibilityMonitor monitor(ownSide.connection());
    ASSERT_TRUE(waitUntil([&] { return portal.reads == 4; }));

    Q_EMIT portal.SettingChanged(appearance, QStringLiteral("contrast"), QDBusVariant(QStringLiteral("1")));
    Q_EMIT portal.SettingChanged(appearance, QStringLiteral("accent-color"), QDBusVariant(1U));
    Q_EMIT portal.SettingChanged(desktop, QStringLiteral("enable-animations"), QDBusVariant(false));

    // The last of the three has arrived, so the others have, too.
    ASSERT_TRUE(waitUntil([] { return isStill(); }));
    EXPECT_FALSE(KestroTheme::isHighContrast());
}

TEST_F(AccessibilityMonitorTest, LeavesBothOffWithoutAPortal) {
    const AccessibilityMonitor monitor(ownSide.connection());
    // The bus has replied to this call, and to the monitor's before it.
    ownSide.call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));

    EXPECT_FALSE(KestroTheme::isHighContrast());
    EXPECT_FALSE(isStill());
}

}  // namespace
}  // namespace kestro

#include "accessibility_monitor_test.moc"
