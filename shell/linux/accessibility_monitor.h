#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace kestro {

/// Follows the desktop's accessibility settings (raised contrast, no animations) through the settings portal and
/// applies them to the theme. Starts no service: without a portal both stay off. Main thread.
class AccessibilityMonitor : public QObject {
    Q_OBJECT

public:
    explicit AccessibilityMonitor(QDBusConnection bus);
    ~AccessibilityMonitor() override;

private Q_SLOTS:
    void onSetting(const QString& area, const QString& key, const QDBusVariant& value);

private:
    void ask(const QString& area, const QString& key);

    QDBusConnection bus_;
    bool prefersContrast_ = false;           ///< org.freedesktop.appearance
    bool usesHighContrast_ = false;          ///< org.gnome.desktop.a11y.interface
    bool prefersStillness_ = false;          ///< org.freedesktop.appearance
    bool hasAnimationsSwitchedOff_ = false;  ///< org.gnome.desktop.interface
};

}  // namespace kestro
