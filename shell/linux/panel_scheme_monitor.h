#pragma once

#include "shell/linux/panel_look.h"

#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <optional>

namespace kestro {

class HostMonitor;

/// Follows whether the panel is dark or light: the desktop's colour preference from the settings portal, the
/// panel's own setting where it has one (Xfce), the process that hosts the items, and the palette. Starts no
/// service: services that are not running are ignored. Main thread.
class PanelSchemeMonitor : public QObject {
    Q_OBJECT

public:
    /// `monitor` outlives this object.
    explicit PanelSchemeMonitor(const HostMonitor& monitor);

    const PanelLook& look() const { return look_; }

Q_SIGNALS:
    void lookChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void onPortalSetting(const QString& area, const QString& key, const QDBusVariant& value);
    void onPanelSetting(const QString& channel, const QString& property, const QDBusVariant& value);

private:
    void listen();
    void askPortal();
    void askPanel();
    void update();

    const HostMonitor& monitor_;
    std::optional<bool> prefersDark_;
    std::optional<bool> hostIsDark_;
    PanelLook look_;
};

}  // namespace kestro
