#pragma once

#include <QImage>
#include <optional>

#include "app/status_bar/notifier/bus_types.h"
#include "app/status_bar/notifier/presentation.h"
#include "app/status_bar/panel_colors.h"

namespace kestro {

/// A picture in the form of the bus.
NotifierPixmap notifierPixmap(const QImage& image);

/// The pictures of an item's icon in every size that panels ask for, painted only when somebody reads them and
/// only once for the same icon and look. Main thread.
class IconPixmaps {
public:
    /// The icon to show from now on. True if that is another picture than before.
    bool setIcon(const NotifierIcon& icon, const PanelLook& look);

    /// From 16 to 64 pixels; empty for no icon.
    const NotifierPixmaps& pixmaps();

private:
    NotifierIcon icon_;
    PanelLook look_;
    std::optional<NotifierPixmaps> painted_;
};

}  // namespace kestro
