#pragma once

#include "shell/linux/notifier/action_queue.h"
#include "shell/linux/notifier/bus_object.h"
#include "shell/linux/notifier/host_monitor.h"
#include "shell/linux/notifier/icon_pixmaps.h"
#include "shell/linux/notifier/menu_object.h"
#include "shell/linux/notifier/presentation.h"
#include "shell/linux/status_menu_popup.h"
#include "shell/status_bar.h"

#include <QDBusConnection>
#include <QObject>

#include <optional>

namespace kestro {

class PanelSchemeMonitor;

/// One item exported as org.kde.StatusNotifierItem at "/StatusNotifierItem", with its menu at "/MenuBar", on its
/// own connection and bus name. It registers with the watcher at once and whenever a watcher or a host appears.
/// It sends signals only for what changed. Clicks and entries run from the event loop, after the host has its
/// reply; equal clicks that arrive together count once. Without a bus it does nothing. Main thread.
///
/// It has no label properties while it has no text: MATE's panel hides the icon of an item with a label, an empty
/// one included, if the desktop shows no icons in buttons. Hosts do not notice that a label is gone, so when the
/// text disappears the item registers again under another name.
class SniStatusItem : public QObject, public StatusItem {
    Q_OBJECT

public:
    /// `monitor` and `scheme` outlive the item.
    SniStatusItem(const QString& identifier, StatusItemHandlers handlers, const HostMonitor& monitor,
                  const PanelSchemeMonitor& scheme);
    ~SniStatusItem() override;

    void setContent(const StatusContent& content) override;
    void openMenu(std::optional<QPoint> position) override;
    QRect geometry() const override { return {}; }

    /// The bus name under which hosts know the item; empty without a bus.
    const QString& serviceName() const { return serviceName_; }

private:
    void addProperties(const QString& identifier);
    void addMethods();
    bool claimServiceName();
    void registerWithWatcher();
    void registerAnew();
    void present();
    void announce(const NotifierPresentation& before);
    BusReply activate(const QVariantList& arguments, StatusClick click);
    BusReply contextMenu(const QVariantList& arguments);
    BusReply scroll(const QVariantList& arguments);
    BusReply provideActivationToken(const QVariantList& arguments);
    Menu buildMenu() const;

    StatusItemHandlers handlers_;
    const HostMonitor& monitor_;
    const PanelSchemeMonitor& scheme_;
    QDBusConnection connection_;
    QString serviceName_;
    BusObject object_;
    MenuObject menu_;
    StatusContent content_;
    NotifierPresentation shown_;
    IconPixmaps icon_;
    ActionQueue clicks_;
    StatusMenuPopup popup_;
    std::optional<QPoint> lastClick_;
};

}  // namespace kestro
