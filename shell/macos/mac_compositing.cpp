#include "shell/macos/mac_compositing.h"

#include "core/settings/user_settings.h"
#include "shell/macos/screen_coordinates.h"

namespace kestro {

namespace {

std::int64_t materialIn(const UserSettings& settings) {
    return static_cast<std::int64_t>(nsMaterial(settings.glassMaterial.get()));
}

}  // namespace

MacCompositing::MacCompositing(NativeVisualEffects& effects, const UserSettings& settings)
    : effects_(effects),
      settings_(settings),
      materialChanges_(settings.glassMaterial.subscribe([this](GlassMaterialStyle) { followMaterial(); })) {}

void MacCompositing::requestBlurBehind(QWindow& window, const QRegion& region) const {
    effects_.lay(static_cast<NativeView>(window.winId()), materialIn(settings_),
                 screen_coordinates::partsOfView(region, window.height(), window.devicePixelRatio()));
    glassy_.removeAll(&window);
    glassy_.removeAll(nullptr);
    if (!region.isEmpty()) {
        glassy_.append(&window);
    }
}

void MacCompositing::followMaterial() {
    for (const QPointer<QWindow>& window : std::as_const(glassy_)) {
        // A window that is not on the screen may have lost its view, and gets its pane when it is shown again.
        if (window != nullptr && window->handle() != nullptr) {
            effects_.setMaterial(static_cast<NativeView>(window->winId()), materialIn(settings_));
        }
    }
}

}  // namespace kestro
