#include "ui/settings/glass_sample.h"

#include "ui/decorations/progressive_blur_fade.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/visual_effect_blur.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace kestro {

namespace {

void paintWallpaper(QPainter& painter, const QRectF& area) {
    QLinearGradient sky(area.topLeft(), area.bottomRight());
    sky.setColorAt(0, QColor(0x4a, 0x5f, 0x82));
    sky.setColorAt(0.35, QColor(0x6b, 0x5a, 0x78));
    sky.setColorAt(0.6, QColor(0xb0, 0x8a, 0x52));
    sky.setColorAt(1, QColor(0x3f, 0x66, 0x62));
    painter.fillRect(area, sky);
}

QImage glass(const QRectF& area, double scale, GlassMaterialStyle style, bool fades) {
    QImage image((area.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF whole(QPointF(), area.size());
    const VisualEffectBlur effect{nsMaterial(style), VisualEffectBlendingMode::behindWindow,
                                  VisualEffectState::active};
    effect.makeNSView()->paint(painter, whole, true);
    if (fades) {
        ProgressiveBlurFade::apply(painter, whole);
    }
    return image;
}

void paintContent(QPainter& painter, const QRectF& area) {
    constexpr double inset = 12;
    constexpr double share = 0.24;
    const TextStyle title{11, 14, text_styles::w600, 0.2, KestroTheme::textPrimary};
    const QRectF inner = area.adjusted(inset, 0, -inset, 0);
    const double top = area.top();
    SymbolPainter::paint(painter, QStringLiteral("gauge.with.needle"), QRectF(inner.left(), top + 11, 11, 11),
                         KestroTheme::accentCool());
    drawText(painter, QRectF(inner.left() + 17, top + 9, inner.width() - 17, 14), QStringLiteral("KESTRO"), title);
    const QRectF line(inner.left(), top + 26, inner.width(), 14);
    drawText(painter, line, QStringLiteral("Performance"), text_styles::popoverLabel);
    drawText(painter, line, QStringLiteral("24%"), text_styles::popoverValue, Qt::AlignRight, TextFit::value);
    paintBar(painter, QRectF(inner.left(), top + 46, inner.width(), 4), share, Ink::white(0.08).color(),
             KestroTheme::accentCool());
}

}  // namespace

void paintGlassSample(QPainter& painter, const QRectF& area, GlassMaterialStyle style, bool fades) {
    paintWallpaper(painter, area);
    painter.drawImage(area.topLeft(), glass(area, deviceScale(painter), style, fades));
    paintContent(painter, area);
}

}  // namespace kestro
