#include "shell/linux/panel_look.h"

#include "ui/theme/status_colors.h"

namespace kestro {

namespace {

constexpr QRgb darkPanelText = qRgb(229, 233, 237);
constexpr QRgb lightPanelText = qRgb(38, 40, 44);

/// Whether a process wraps a plugin of Xfce's panel. It starts as wrapper-2.0 and then takes a name such as
/// "panel-2-systray".
bool isXfcePlugin(const QString& process) {
    const QLatin1StringView prefix("panel-");
    bool isNumber = false;
    process.mid(prefix.size()).section(QLatin1Char('-'), 0, 0).toInt(&isNumber);
    return process == QLatin1StringView("wrapper-2.0") || (process.startsWith(prefix) && isNumber);
}

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

bool isXfcePanel(const QString& hostProcess, const QStringList& desktops) {
    return hostProcess == QLatin1StringView("xfce4-panel") || isXfcePlugin(hostProcess) ||
           desktops.contains(QLatin1StringView("XFCE"));
}

PanelLook panelLook(const PanelFacts& facts) {
    // The top bars of these two are black regardless of the applications' colours.
    const bool isAlwaysDark = facts.hostProcess == QLatin1StringView("gnome-shell") ||
                              facts.desktops.contains(QLatin1StringView("Unity"));
    const bool isDark = isAlwaysDark || facts.hostIsDark.value_or(facts.prefersDark.value_or(facts.isPaletteDark));
    return {isDark ? PanelScheme::dark : PanelScheme::light, isAlwaysDark || facts.hostIsDark.has_value()};
}

}  // namespace kestro
