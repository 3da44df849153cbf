#include "app/status_bar/panel_scheme_monitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include "app/status_bar/notifier/host_monitor.h"
#include "app/status_bar/notifier/when_answered.h"

namespace kestro {

namespace {

// The settings portal: org.freedesktop.portal.Settings.
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceArea = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

// The settings daemon of Xfce.
const QString panelSettingsService = QStringLiteral("org.xfce.Xfconf");
const QString panelSettingsPath = QStringLiteral("/org/xfce/Xfconf");
const QString panelChannel = QStringLiteral("xfce4-panel");
const QString darkPanelProperty = QStringLiteral("/panels/dark-mode");

QDBusMessage quietCall(const QString& service, const QString& path, const QString& interface,
                       const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

/// The portal wraps the value once or twice, depending on its version.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

/// 1: dark, 2: light; everything else: no preference.
std::optional<bool> darkPreference(const QVariant& value) {
    if (value.metaType() != QMetaType::fromType<uint>()) {
        return std::nullopt;
    }
    const uint preference = value.toUInt();
    return preference == 1 || preference == 2 ? std::optional(preference == 1) : std::nullopt;
}

std::optional<bool> flag(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<bool>() ? std::optional(value.toBool()) : std::nullopt;
}

bool isPaletteDark() {
    constexpr double middle = 0.5;
    return QGuiApplication::palette().color(QPalette::Window).lightnessF() < middle;
}

}  // namespace

PanelSchemeMonitor::PanelSchemeMonitor(const HostMonitor& monitor) : monitor_(monitor) {
    look_ = panelLook({monitor.hostProcess(), monitor.environment().desktops, {}, {}, isPaletteDark()});
    qApp->installEventFilter(this);
    if (!monitor_.connection().isConnected()) {
        return;
    }
    listen();
    askPortal();
    connect(&monitor_, &HostMonitor::hostIdentified, this, [this] {
        askPanel();
        update();
    });
}

bool PanelSchemeMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp) {
        update();
    }
    return QObject::eventFilter(watched, event);
}

void PanelSchemeMonitor::listen() {
    QDBusConnection connection = monitor_.connection();
    connection.connect(portalService, portalPath, portalInterface, QStringLiteral("SettingChanged"), this,
                       SLOT(onPortalSetting(QString, QString, QDBusVariant)));
    connection.connect(panelSettingsService, panelSettingsPath, panelSettingsService,
                       QStringLiteral("PropertyChanged"), this,
                       SLOT(onPanelSetting(QString, QString, QDBusVariant)));
}

void PanelSchemeMonitor::askPortal() {
    const QDBusMessage read = quietCall(portalService, portalPath, portalInterface, QStringLiteral("Read"),
                                        {appearanceArea, colorSchemeKey});
    whenAnswered(monitor_.connection().asyncCall(read), this, [this](const QDBusMessage& reply) {
        if (isReply(reply, QLatin1StringView("v"))) {
            prefersDark_ = darkPreference(unwrapped(reply.arguments().at(0)));
            update();
        }
    });
}

void PanelSchemeMonitor::askPanel() {
    const bool isXfce = monitor_.hostProcess() == QLatin1StringView("xfce4-panel") ||
                        monitor_.environment().desktops.contains(QLatin1StringView("XFCE"));
    if (!isXfce) {
        hostIsDark_.reset();
        return;
    }
    const QDBusMessage get = quietCall(panelSettingsService, panelSettingsPath, panelSettingsService,
                                       QStringLiteral("GetProperty"), {panelChannel, darkPanelProperty});
    whenAnswered(monitor_.connection().asyncCall(get), this, [this](const QDBusMessage& reply) {
        hostIsDark_ =
            isReply(reply, QLatin1StringView("v")) ? flag(unwrapped(reply.arguments().at(0))) : std::nullopt;
        update();
    });
}

void PanelSchemeMonitor::onPortalSetting(const QString& area, const QString& key, const QDBusVariant& value) {
    if (area == appearanceArea && key == colorSchemeKey) {
        prefersDark_ = darkPreference(unwrapped(value.variant()));
        update();
    }
}

void PanelSchemeMonitor::onPanelSetting(const QString& channel, const QString& property,
                                        const QDBusVariant& value) {
    if (channel == panelChannel && property == darkPanelProperty) {
        hostIsDark_ = flag(unwrapped(value.variant()));
        update();
    }
}

void PanelSchemeMonitor::update() {
    const PanelLook look = panelLook(
        {monitor_.hostProcess(), monitor_.environment().desktops, prefersDark_, hostIsDark_, isPaletteDark()});
    if (look == look_) {
        return;
    }
    look_ = look;
    Q_EMIT lookChanged();
}

}  // namespace kestro
