#include "shell/linux/accessibility_monitor.h"

#include "shell/accessibility_preferences.h"
#include "shell/linux/bus_signals.h"
#include "shell/linux/settings_portal.h"
#include "shell/linux/when_answered.h"

#include <QDBusMessage>

namespace kestro {

namespace {

const QString contrastKey = QStringLiteral("contrast");
const QString reducedMotionKey = QStringLiteral("reduced-motion");
const QString desktopArea = QStringLiteral("org.gnome.desktop.interface");
const QString animationsKey = QStringLiteral("enable-animations");
const QString accessArea = QStringLiteral("org.gnome.desktop.a11y.interface");
const QString highContrastKey = QStringLiteral("high-contrast");

bool isNumberOne(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<uint>() && value.toUInt() == 1;
}

bool isFlag(const QVariant& value, bool state) {
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool() == state;
}

}  // namespace

AccessibilityMonitor::AccessibilityMonitor(QDBusConnection bus) : bus_(std::move(bus)) {
    if (!bus_.isConnected()) {
        return;
    }
    connectVariantSignal(bus_, settings_portal::service, settings_portal::path, settings_portal::interface,
                         QStringLiteral("SettingChanged"), this, SLOT(onSetting(QString, QString, QDBusVariant)));
    ask(settings_portal::appearanceArea, contrastKey);
    ask(settings_portal::appearanceArea, reducedMotionKey);
    ask(desktopArea, animationsKey);
    ask(accessArea, highContrastKey);
}

AccessibilityMonitor::~AccessibilityMonitor() = default;

void AccessibilityMonitor::ask(const QString& area, const QString& key) {
    whenAnswered(bus_.asyncCall(settings_portal::readCall(area, key)), this,
                 [this, area, key](const QDBusMessage& reply) {
                     if (isReply(reply, QLatin1StringView("v"))) {
                         onSetting(area, key, QDBusVariant(reply.arguments().at(0)));
                     }
                 });
}

void AccessibilityMonitor::onSetting(const QString& area, const QString& key, const QDBusVariant& value) {
    const QVariant content = settings_portal::unwrapped(value.variant());
    if (area == settings_portal::appearanceArea && key == contrastKey) {
        prefersContrast_ = isNumberOne(content);
    } else if (area == accessArea && key == highContrastKey) {
        usesHighContrast_ = isFlag(content, true);
    } else if (area == settings_portal::appearanceArea && key == reducedMotionKey) {
        prefersStillness_ = isNumberOne(content);
    } else if (area == desktopArea && key == animationsKey) {
        hasAnimationsSwitchedOff_ = isFlag(content, false);
    } else {
        return;
    }
    AccessibilityPreferences{.wantsHighContrast = prefersContrast_ || usesHighContrast_,
                             .wantsReducedMotion = prefersStillness_ || hasAnimationsSwitchedOff_}
        .apply();
}

}  // namespace kestro
