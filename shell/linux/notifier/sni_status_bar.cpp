#include "shell/linux/notifier/sni_status_bar.h"

#include "shell/linux/notifier/sni_status_item.h"

#include <utility>

namespace kestro {

SniStatusBar::SniStatusBar(const HostMonitor& monitor, const PanelSchemeMonitor& scheme)
    : monitor_(monitor), scheme_(scheme) {}

std::unique_ptr<StatusItem> SniStatusBar::createItem(const QString& identifier, StatusItemHandlers handlers) {
    return std::make_unique<SniStatusItem>(identifier, std::move(handlers), monitor_, scheme_);
}

}  // namespace kestro
