#pragma once

#include "core/model/appearance_enumerations.h"

#include <QRectF>

#include <memory>

class QPainter;

namespace kestro {

/// Whether the glass shows what is behind the window, or only the window's own content.
enum class VisualEffectBlendingMode { behindWindow, withinWindow };

/// Whether the glass is always lit, or only while its window is active.
enum class VisualEffectState { followsWindowActiveState, active, inactive };

/// A painted pane of glass: a ground in the palette's colour and a wash that distinguishes the material. The
/// ground is opaque where nothing may shine through. Main thread.
class VisualEffectView {
public:
    void setMaterial(VisualEffectMaterial material) { material_ = material; }
    void setBlendingMode(VisualEffectBlendingMode mode) { blendingMode_ = mode; }
    void setState(VisualEffectState state) { state_ = state; }

    VisualEffectMaterial material() const { return material_; }
    VisualEffectBlendingMode blendingMode() const { return blendingMode_; }
    VisualEffectState state() const { return state_; }

    /// Whether the wash has its full strength; otherwise half.
    bool isLit(bool isWindowActive) const;

    /// Paints ground and wash over `rect`.
    void paint(QPainter& painter, const QRectF& rect, bool isWindowActive) const;

private:
    VisualEffectMaterial material_ = VisualEffectMaterial::underWindowBackground;
    VisualEffectBlendingMode blendingMode_ = VisualEffectBlendingMode::behindWindow;
    VisualEffectState state_ = VisualEffectState::active;
};

/// The configuration of a view's glass; creates its pane and updates it in place.
struct VisualEffectBlur {
    VisualEffectMaterial material = VisualEffectMaterial::underWindowBackground;
    VisualEffectBlendingMode blendingMode = VisualEffectBlendingMode::behindWindow;
    VisualEffectState state = VisualEffectState::active;

    std::unique_ptr<VisualEffectView> makeNSView() const;
    void updateNSView(VisualEffectView& view) const;

    friend bool operator==(const VisualEffectBlur&, const VisualEffectBlur&) = default;
};

}  // namespace kestro
