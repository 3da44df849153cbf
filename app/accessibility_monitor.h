#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace kestro {

/// Follows what the desktop's accessibility settings ask of every surface, raised contrast and no animations,
/// as the settings portal tells them, and passes it on to the theme. Starts no service: without a portal
/// nothing is asked. Main thread.
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
