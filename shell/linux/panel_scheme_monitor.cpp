#include "shell/linux/panel_scheme_monitor.h"

#include "shell/linux/bus_signals.h"
#include "shell/linux/notifier/host_monitor.h"
#include "shell/linux/settings_portal.h"
#include "shell/linux/when_answered.h"
#include "shell/linux/xfce_panel_monitor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace kestro {

namespace {

const QString colorSchemeKey = QStringLiteral("color-scheme");

/// 1: dark, 2: light; anything else: no preference.
std::optional<bool> darkPreference(const QVariant& value) {
    if (value.metaType() != QMetaType::fromType<uint>()) {
        return std::nullopt;
    }
    const uint preference = value.toUInt();
    return preference == 1 || preference == 2 ? std::optional(preference == 1) : std::nullopt;
}

bool isPaletteDark() {
    constexpr double middle = 0.5;
    return QGuiApplication::palette().color(QPalette::Window).lightnessF() < middle;
}

}  // namespace

PanelSchemeMonitor::PanelSchemeMonitor(const HostMonitor& monitor) : monitor_(monitor) {
    look_ = panelLook({monitor.hostProcess(), monitor.environment().desktops, {}, {}, isPaletteDark()});
    QCoreApplication::instance()->installEventFilter(this);
    if (!monitor_.connection().isConnected()) {
        return;
    }
    listen();
    askPortal();
    connect(&monitor_, &HostMonitor::hostIdentified, this, [this] {
        identifyPanel();
        update();
    });
}

PanelSchemeMonitor::~PanelSchemeMonitor() = default;

bool PanelSchemeMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()) {
        update();
    }
    return QObject::eventFilter(watched, event);
}

void PanelSchemeMonitor::listen() {
    connectVariantSignal(monitor_.connection(), settings_portal::service, settings_portal::path,
                         settings_portal::interface, QStringLiteral("SettingChanged"), this,
                         SLOT(onPortalSetting(QString, QString, QDBusVariant)));
}

void PanelSchemeMonitor::askPortal() {
    const QDBusMessage read = settings_portal::readCall(settings_portal::appearanceArea, colorSchemeKey);
    whenAnswered(monitor_.connection().asyncCall(read), this, [this](const QDBusMessage& reply) {
        if (isReply(reply, QLatin1StringView("v"))) {
            prefersDark_ = darkPreference(settings_portal::unwrapped(reply.arguments().at(0)));
            update();
        }
    });
}

void PanelSchemeMonitor::identifyPanel() {
    if (!isXfcePanel(monitor_.hostProcess(), monitor_.environment().desktops)) {
        xfcePanel_.reset();
    } else if (xfcePanel_) {
        xfcePanel_->ask();
    } else {
        xfcePanel_ = std::make_unique<XfcePanelMonitor>(monitor_.connection());
        connect(xfcePanel_.get(), &XfcePanelMonitor::changed, this, &PanelSchemeMonitor::update);
    }
}

std::optional<bool> PanelSchemeMonitor::isPanelDark() const {
    return xfcePanel_ ? xfcePanel_->isDark() : std::nullopt;
}

void PanelSchemeMonitor::onPortalSetting(const QString& area, const QString& key, const QDBusVariant& value) {
    if (area == settings_portal::appearanceArea && key == colorSchemeKey) {
        prefersDark_ = darkPreference(settings_portal::unwrapped(value.variant()));
        update();
    }
}

void PanelSchemeMonitor::update() {
    const PanelLook look = panelLook(
        {monitor_.hostProcess(), monitor_.environment().desktops, prefersDark_, isPanelDark(), isPaletteDark()});
    if (look == look_) {
        return;
    }
    look_ = look;
    Q_EMIT lookChanged();
}

}  // namespace kestro
