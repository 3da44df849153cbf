#include "shell/linux/notifier/glance_icon.h"
#include "shell/linux/status_menu_popup.h"

// The fuzz targets draw nothing: no untrusted input reaches the pictures and the open menus.
namespace kestro {

QImage glanceIcon(const StatusGlance&, int, PanelScheme) {
    return {};
}

QImage symbolIcon(const QString&, int, double, PanelScheme) {
    return {};
}

QImage haloed(const QImage& icon, PanelScheme) {
    return icon;
}

StatusMenuPopup::~StatusMenuPopup() = default;

void StatusMenuPopup::open(const Menu&, QPoint) {}

}  // namespace kestro
