#include "ui/theme/visual_effect_blur.h"

#include "ui/theme/color_mix.h"
#include "ui/theme/kestro_theme.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>

namespace kestro {

namespace {

constexpr double unlitStrength = 0.5;

// The maximum luminance of the accent's glow at full opacity: secondary text stays readable in it, even over a
// white wallpaper.
constexpr double glowLuminance = 0.2;

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

double groundOpacity(VisualEffectMaterial material) {
    switch (material) {
        case VisualEffectMaterial::underWindowBackground:
            return 0.94;
        case VisualEffectMaterial::hudWindow:
            return 0.98;
        case VisualEffectMaterial::popover:
            return 0.92;
    }
    return 1;
}

/// Lit from above, neutral.
void paintFrost(QPainter& painter, const QRectF& rect, double strength) {
    constexpr double brightDepth = 90;
    QLinearGradient light(rect.topLeft(), rect.bottomLeft());
    light.setColorAt(0, withOpacity(Qt::white, 0.055 * strength));
    if (rect.height() > brightDepth) {
        light.setColorAt(brightDepth / rect.height(), withOpacity(Qt::white, 0.018 * strength));
    }
    light.setColorAt(1, withOpacity(Qt::white, 0.012 * strength));
    painter.fillRect(rect, light);
}

/// Darkest and flat.
void paintShade(QPainter& painter, const QRectF& rect, double strength) {
    painter.fillRect(rect, withOpacity(Qt::black, 0.42 * strength));
}

/// Lighter, with the accent shining in from the top left.
void paintTint(QPainter& painter, const QRectF& rect, double strength) {
    constexpr double reach = 1.2;
    const QColor accent = KestroTheme::accentCool();
    const double glowStrength = strength * std::min(1.0, glowLuminance / luminance(accent));
    QRadialGradient glow(QPointF(0, 0), 1);
    glow.setColorAt(0, withOpacity(accent, 0.10 * glowStrength));
    glow.setColorAt(0.6, withOpacity(accent, 0.02 * glowStrength));
    QBrush brush(glow);
    QTransform toRect = QTransform::fromTranslate(rect.left(), rect.top());
    toRect.scale(reach * rect.width(), reach * rect.height());
    brush.setTransform(toRect);
    painter.fillRect(rect, brush);
    painter.fillRect(rect, withOpacity(Qt::white, 0.03 * strength));
}

}  // namespace

bool VisualEffectView::isLit(bool isWindowActive) const {
    return state_ == VisualEffectState::active ||
           (state_ == VisualEffectState::followsWindowActiveState && isWindowActive);
}

void VisualEffectView::paint(QPainter& painter, const QRectF& rect, bool isWindowActive) const {
    const bool isOpaque = blendingMode_ == VisualEffectBlendingMode::withinWindow || KestroTheme::isHighContrast();
    painter.fillRect(rect, withOpacity(KestroTheme::ground(), isOpaque ? 1 : groundOpacity(material_)));
    const double strength = isLit(isWindowActive) ? 1 : unlitStrength;
    switch (material_) {
        case VisualEffectMaterial::underWindowBackground:
            paintFrost(painter, rect, strength);
            break;
        case VisualEffectMaterial::hudWindow:
            paintShade(painter, rect, strength);
            break;
        case VisualEffectMaterial::popover:
            paintTint(painter, rect, strength);
            break;
    }
}

std::unique_ptr<VisualEffectView> VisualEffectBlur::makeNSView() const {
    auto view = std::make_unique<VisualEffectView>();
    updateNSView(*view);
    return view;
}

void VisualEffectBlur::updateNSView(VisualEffectView& view) const {
    view.setMaterial(material);
    view.setBlendingMode(blendingMode);
    view.setState(state);
}

}  // namespace kestro
