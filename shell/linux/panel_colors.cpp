#include "shell/linux/panel_colors.h"

namespace kestro {

PanelLook panelLook(const PanelFacts& facts) {
    // The top bars of these two are black regardless of the applications' colours.
    const bool isAlwaysDark = facts.hostProcess == QLatin1StringView("gnome-shell") ||
                              facts.desktops.contains(QLatin1StringView("Unity"));
    const bool isDark = isAlwaysDark || facts.hostIsDark.value_or(facts.prefersDark.value_or(facts.isPaletteDark));
    return {isDark ? PanelScheme::dark : PanelScheme::light, isAlwaysDark || facts.hostIsDark.has_value()};
}

}  // namespace kestro
