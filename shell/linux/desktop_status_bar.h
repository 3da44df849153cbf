#pragma once

#include "shell/linux/notifier/host_monitor.h"
#include "shell/linux/notifier/sni_status_bar.h"
#include "shell/linux/panel_scheme_monitor.h"
#include "shell/linux/strip/strip_status_bar.h"
#include "shell/status_bar.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kestro {

/// Where items live on this desktop: in a panel that hosts status items, or on the strip if there is none. Items
/// move when that changes. A panel may take a moment to start or restart, so the strip appears only after the
/// grace period, or at once if there is no bus. While another program shows the readout in its panel, the
/// readout's own item is nowhere, and the strip, which would only be a second place for the others, is empty. Main
/// thread; outlives its items.
class DesktopStatusBar : public QObject, public StatusBar {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultGrace{1000};

    explicit DesktopStatusBar(NotifierEnvironment environment = NotifierEnvironment::current(),
                              std::chrono::milliseconds grace = defaultGrace);
    ~DesktopStatusBar() override;

    [[nodiscard]] std::unique_ptr<StatusItem> createItem(const QString& identifier,
                                                         StatusItemHandlers handlers) override;
    QRect overlay() const override { return strip_.overlay(); }
    void onOverlayChanged(std::function<void()> onChange) override {
        strip_.onOverlayChanged(std::move(onChange));
    }

    /// Whether another program shows the readout.
    void setReadoutHosted(bool isHosted);

    /// True while the items are on the strip.
    bool isOnStrip() const { return isOnStrip_; }

private:
    class Item;

    void followHost();
    void move(bool toStrip);
    void placeItems();

    /// Where the item belongs now; null: nowhere.
    StatusBar* place(const QString& identifier);

    HostMonitor monitor_;
    PanelSchemeMonitor scheme_;
    SniStatusBar panels_;
    StripStatusBar strip_;
    std::vector<Item*> items_;
    QTimer grace_;
    bool isOnStrip_ = false;
    bool isReadoutHosted_ = false;
};

}  // namespace kestro
