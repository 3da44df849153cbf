#pragma once

#include "shell/linux/notifier/bus_types.h"
#include "shell/linux/notifier/presentation.h"
#include "shell/linux/panel_look.h"

#include <QImage>

#include <optional>

namespace kestro {

/// Converts an image to the bus format.
NotifierPixmap notifierPixmap(const QImage& image);

/// An item's icon in every size that panels request, painted on first read and once per icon and look. Main
/// thread.
class IconPixmaps {
public:
    /// Sets the icon to show. True if the image changed.
    bool setIcon(const NotifierIcon& icon, const PanelLook& look);

    /// Sizes from 16 to 64 pixels; empty for no icon.
    const NotifierPixmaps& pixmaps();

private:
    NotifierIcon icon_;
    PanelLook look_;
    std::optional<NotifierPixmaps> painted_;
};

}  // namespace kestro
