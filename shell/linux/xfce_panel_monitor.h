#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <optional>

namespace kestro {

/// Follows whether Xfce's panel is dark: it can prefer the dark variant of the desktop's theme. The panel has the
/// theme of the settings while Xfce's settings daemon runs, and GTK's default theme otherwise. Starts no service.
/// Main thread.
class XfcePanelMonitor : public QObject {
    Q_OBJECT

public:
    /// Asks for the settings, and follows them.
    explicit XfcePanelMonitor(const QDBusConnection& connection);

    /// Asks again.
    void ask();

    /// Absent: not known, or not known yet.
    std::optional<bool> isDark() const;

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void onSetting(const QString& channel, const QString& property, const QDBusVariant& value);
    void onReset(const QString& channel, const QString& property);

private:
    void askWhetherThemed();
    void askFor(const QString& channel, const QString& property);
    void take(const QString& channel, const QString& property, const QVariant& value);

    QDBusConnection connection_;
    QDBusServiceWatcher settingsDaemon_;
    std::optional<bool> prefersDark_;
    QString theme_;
    bool isThemed_ = false;
};

}  // namespace kestro
