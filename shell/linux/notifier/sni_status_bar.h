#pragma once

#include "shell/linux/notifier/host_monitor.h"
#include "shell/linux/panel_scheme_monitor.h"
#include "shell/status_bar.h"

namespace kestro {

/// A status bar whose items are in the desktop's panels. Main thread.
class SniStatusBar : public StatusBar {
public:
    /// Both outlive the bar and its items.
    SniStatusBar(const HostMonitor& monitor, const PanelSchemeMonitor& scheme);

    [[nodiscard]] std::unique_ptr<StatusItem> createItem(const QString& identifier,
                                                         StatusItemHandlers handlers) override;

private:
    const HostMonitor& monitor_;
    const PanelSchemeMonitor& scheme_;
};

}  // namespace kestro
