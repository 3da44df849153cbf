#include "shell/accessibility_preferences.h"

#include "ui/theme/kestro_theme.h"
#include "ui/theme/motion.h"

#include <QApplication>
#include <QWidget>

namespace kestro {

void AccessibilityPreferences::apply() const {
    motion::setReduced(wantsReducedMotion);
    if (wantsHighContrast == KestroTheme::isHighContrast()) {
        return;
    }
    KestroTheme::setHighContrast(wantsHighContrast);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        window->update();
    }
}

}  // namespace kestro
