#include "shell/panel_look.h"

#include "ui/theme/status_colors.h"

namespace kestro {

namespace {

constexpr QRgb darkPanelText = qRgb(229, 233, 237);
constexpr QRgb lightPanelText = qRgb(38, 40, 44);

}  // namespace

QColor panelColor(StatusTitleColor role, PanelScheme scheme) {
    const bool isDark = scheme == PanelScheme::dark;
    if (role == StatusTitleColor::orange) {
        return isDark ? status_colors::orangeOnDark() : status_colors::orangeOnLight();
    }
    QColor color = QColor::fromRgb(isDark ? darkPanelText : lightPanelText);
    if (role == StatusTitleColor::secondaryLabel) {
        color.setAlphaF(status_colors::secondaryOpacity);
    }
    return color;
}

}  // namespace kestro
