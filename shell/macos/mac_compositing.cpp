#include "shell/macos/mac_compositing.h"

#include "core/settings/user_settings.h"
#include "shell/macos/screen_coordinates.h"

#include <QEvent>
#include <QObject>

#include <functional>
#include <utility>

namespace kestro {

namespace {

std::int64_t materialIn(const UserSettings& settings) {
    return static_cast<std::int64_t>(nsMaterial(settings.glassMaterial.get()));
}

/// A window that is not on the screen may have lost its view, and gets its pane when it is shown again.
bool hasView(const QWindow* window) {
    return window != nullptr && window->handle() != nullptr;
}

}  // namespace

/// Tells of windows that entered or left a state such as full screen, once everybody else has followed. Such a
/// window may be gone by then.
class MacCompositing::WindowStates final : public QObject {
public:
    explicit WindowStates(std::function<void(const QObject*)> onChange) : onChange_(std::move(onChange)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::WindowStateChange) {
            QMetaObject::invokeMethod(
                this, [this, watched] { onChange_(watched); }, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    const std::function<void(const QObject*)> onChange_;
};

MacCompositing::MacCompositing(NativeVisualEffects& effects, const UserSettings& settings)
    : effects_(effects),
      settings_(settings),
      states_(std::make_unique<WindowStates>([this](const QObject* window) { layAgain(window); })),
      materialChanges_(settings.glassMaterial.subscribe([this](GlassMaterialStyle) { followMaterial(); })) {}

MacCompositing::~MacCompositing() = default;

void MacCompositing::requestBlurBehind(QWindow& window, const QRegion& region) const {
    glass_.removeIf([&](const Glass& glass) { return glass.window == nullptr || glass.window == &window; });
    const Glass glass{&window, region};
    lay(glass);
    if (!region.isEmpty()) {
        window.installEventFilter(states_.get());
        glass_.append(glass);
    }
}

void MacCompositing::lay(const Glass& glass) const {
    QWindow& window = *glass.window;
    effects_.lay(static_cast<NativeView>(window.winId()), materialIn(settings_),
                 screen_coordinates::partsOfView(glass.region, window.height(), window.devicePixelRatio()));
}

void MacCompositing::followMaterial() {
    for (const Glass& glass : std::as_const(glass_)) {
        if (hasView(glass.window)) {
            effects_.setMaterial(static_cast<NativeView>(glass.window->winId()), materialIn(settings_));
        }
    }
}

void MacCompositing::layAgain(const QObject* window) {
    for (const Glass& glass : std::as_const(glass_)) {
        // AppKit has built a new frame, without the pane.
        if (glass.window == window && hasView(glass.window)) {
            lay(glass);
        }
    }
}

}  // namespace kestro
