#include "app/accessibility_monitor.h"

#include "app/status_bar/notifier/when_answered.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QDBusMessage>
#include <QWidget>

namespace kestro {

namespace {

// The settings portal: org.freedesktop.portal.Settings.
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");

const QString appearanceArea = QStringLiteral("org.freedesktop.appearance");
const QString contrastKey = QStringLiteral("contrast");
const QString reducedMotionKey = QStringLiteral("reduced-motion");
const QString desktopArea = QStringLiteral("org.gnome.desktop.interface");
const QString animationsKey = QStringLiteral("enable-animations");
const QString accessArea = QStringLiteral("org.gnome.desktop.a11y.interface");
const QString highContrastKey = QStringLiteral("high-contrast");

/// The portal wraps the value once or twice, depending on its version.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

bool isNumberOne(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<uint>() && value.toUInt() == 1;
}

bool isFlag(const QVariant& value, bool state) {
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool() == state;
}

void setHighContrast(bool isHigh) {
    if (isHigh == KestroTheme::isHighContrast()) {
        return;
    }
    KestroTheme::setHighContrast(isHigh);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        window->update();
    }
}

}  // namespace

AccessibilityMonitor::AccessibilityMonitor(QDBusConnection bus) : bus_(std::move(bus)) {
    if (!bus_.isConnected()) {
        return;
    }
    bus_.connect(portalService, portalPath, portalInterface, QStringLiteral("SettingChanged"), this,
                 SLOT(onSetting(QString, QString, QDBusVariant)));
    ask(appearanceArea, contrastKey);
    ask(appearanceArea, reducedMotionKey);
    ask(desktopArea, animationsKey);
    ask(accessArea, highContrastKey);
}

AccessibilityMonitor::~AccessibilityMonitor() = default;

void AccessibilityMonitor::ask(const QString& area, const QString& key) {
    QDBusMessage read =
        QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, QStringLiteral("Read"));
    read.setArguments({area, key});
    read.setAutoStartService(false);
    whenAnswered(bus_.asyncCall(read), this, [this, area, key](const QDBusMessage& reply) {
        if (isReply(reply, QLatin1StringView("v"))) {
            onSetting(area, key, QDBusVariant(reply.arguments().at(0)));
        }
    });
}

void AccessibilityMonitor::onSetting(const QString& area, const QString& key, const QDBusVariant& value) {
    const QVariant content = unwrapped(value.variant());
    if (area == appearanceArea && key == contrastKey) {
        prefersContrast_ = isNumberOne(content);
    } else if (area == accessArea && key == highContrastKey) {
        usesHighContrast_ = isFlag(content, true);
    } else if (area == appearanceArea && key == reducedMotionKey) {
        prefersStillness_ = isNumberOne(content);
    } else if (area == desktopArea && key == animationsKey) {
        hasAnimationsSwitchedOff_ = isFlag(content, false);
    } else {
        return;
    }
    setHighContrast(prefersContrast_ || usesHighContrast_);
    motion::setReduced(prefersStillness_ || hasAnimationsSwitchedOff_);
}

}  // namespace kestro
