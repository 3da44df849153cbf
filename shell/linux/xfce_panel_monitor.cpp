#include "shell/linux/xfce_panel_monitor.h"

#include "shell/linux/bus_signals.h"
#include "shell/linux/gtk_theme.h"
#include "shell/linux/settings_portal.h"
#include "shell/linux/when_answered.h"

#include <QDBusMessage>

namespace kestro {

namespace {

/// The service that stores the settings.
const QString storeService = QStringLiteral("org.xfce.Xfconf");
const QString storePath = QStringLiteral("/org/xfce/Xfconf");
const QString panelChannel = QStringLiteral("xfce4-panel");
const QString darkModeProperty = QStringLiteral("/panels/dark-mode");
const QString desktopChannel = QStringLiteral("xsettings");
const QString themeProperty = QStringLiteral("/Net/ThemeName");

/// The program that passes them to the toolkits.
const QString settingsDaemon = QStringLiteral("org.xfce.SettingsDaemon");

}  // namespace

XfcePanelMonitor::XfcePanelMonitor(const QDBusConnection& connection)
    : connection_(connection), settingsDaemon_(settingsDaemon, connection) {
    connectVariantSignal(connection_, storeService, storePath, storeService, QStringLiteral("PropertyChanged"),
                         this, SLOT(onSetting(QString, QString, QDBusVariant)));
    connection_.connect(storeService, storePath, storeService, QStringLiteral("PropertyRemoved"), this,
                        SLOT(onReset(QString, QString)));
    connect(&settingsDaemon_, &QDBusServiceWatcher::serviceOwnerChanged, this, &XfcePanelMonitor::ask);
    ask();
}

void XfcePanelMonitor::ask() {
    askWhetherThemed();
    askFor(desktopChannel, themeProperty);
    // Last, because nothing is known without it.
    askFor(panelChannel, darkModeProperty);
}

std::optional<bool> XfcePanelMonitor::isDark() const {
    return prefersDark_ ? isGtkThemeDark(isThemed_ ? theme_ : themeOfGtkSettingsFile(), *prefersDark_)
                        : std::nullopt;
}

void XfcePanelMonitor::askWhetherThemed() {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage question = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                                           QStringLiteral("NameHasOwner"));
    question.setArguments({settingsDaemon});
    whenAnswered(connection_.asyncCall(question), this, [this](const QDBusMessage& reply) {
        isThemed_ = isReply(reply, QLatin1StringView("b")) && reply.arguments().at(0).toBool();
        Q_EMIT changed();
    });
}

void XfcePanelMonitor::askFor(const QString& channel, const QString& property) {
    QDBusMessage get =
        QDBusMessage::createMethodCall(storeService, storePath, storeService, QStringLiteral("GetProperty"));
    get.setArguments({channel, property});
    get.setAutoStartService(false);
    whenAnswered(connection_.asyncCall(get), this, [this, channel, property](const QDBusMessage& reply) {
        take(channel, property,
             isReply(reply, QLatin1StringView("v")) ? settings_portal::unwrapped(reply.arguments().at(0))
                                                    : QVariant());
    });
}

void XfcePanelMonitor::onSetting(const QString& channel, const QString& property, const QDBusVariant& value) {
    take(channel, property, settings_portal::unwrapped(value.variant()));
}

void XfcePanelMonitor::onReset(const QString& channel, const QString& property) {
    take(channel, property, QVariant());
}

void XfcePanelMonitor::take(const QString& channel, const QString& property, const QVariant& value) {
    if (channel == panelChannel && property == darkModeProperty) {
        const bool isFlag = value.metaType() == QMetaType::fromType<bool>();
        prefersDark_ = isFlag ? std::optional(value.toBool()) : std::nullopt;
    } else if (channel == desktopChannel && property == themeProperty) {
        theme_ = value.metaType() == QMetaType::fromType<QString>() ? value.toString() : QString();
    } else {
        return;
    }
    Q_EMIT changed();
}

}  // namespace kestro
