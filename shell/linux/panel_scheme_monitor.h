#pragma once

#include "shell/linux/panel_look.h"

#include <QDBusVariant>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace kestro {

class HostMonitor;
class XfcePanelMonitor;

/// Follows whether the panel is dark or light: the desktop's colour preference from the settings portal, the
/// settings of Xfce's panel, the process that hosts the items, and the palette. Starts no
/// service: services that are not running are ignored. Main thread.
class PanelSchemeMonitor : public QObject {
    Q_OBJECT

public:
    /// `monitor` outlives this object.
    explicit PanelSchemeMonitor(const HostMonitor& monitor);
    ~PanelSchemeMonitor() override;
    PanelSchemeMonitor(const PanelSchemeMonitor&) = delete;
    PanelSchemeMonitor& operator=(const PanelSchemeMonitor&) = delete;

    const PanelLook& look() const { return look_; }

Q_SIGNALS:
    void lookChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void onPortalSetting(const QString& area, const QString& key, const QDBusVariant& value);

private:
    void listen();
    void askPortal();
    void identifyPanel();
    std::optional<bool> isPanelDark() const;
    void update();

    const HostMonitor& monitor_;
    std::optional<bool> prefersDark_;
    std::unique_ptr<XfcePanelMonitor> xfcePanel_;  // empty: the panel is another one
    PanelLook look_;
};

}  // namespace kestro
