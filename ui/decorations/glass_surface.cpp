#include "ui/decorations/glass_surface.h"

#include "core/settings/user_settings.h"
#include "ui/decorations/progressive_blur_fade.h"
#include "ui/paint/hairline.h"
#include "ui/paint/zoom.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/window_compositing.h"
#include "ui/theme/window_shape.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimerEvent>
#include <QWindow>

#include <utility>

namespace kestro {

/// All inputs of the rendered backdrop.
struct GlassSurface::Backdrop {
    QSize size;
    double scale = 1;
    double zoom = 1;
    double cornerRadius = 0;
    VisualEffectBlur effect;
    bool isHighContrast = false;
    bool hasEdgeFade = false;
    ThemePalette palette = ThemePalette::cryogenic;
    HalftoneIntensity intensity = HalftoneIntensity::off;
    std::optional<PlacedHalftoneField> halftone;

    friend bool operator==(const Backdrop&, const Backdrop&) = default;
};

namespace {

/// Interval of the checks for a compositing manager: there is no notification, and it rarely changes.
constexpr int compositingCheckMilliseconds = 5000;

void cutCorners(QPainter& painter, const QRectF& area, double radius) {
    QPainterPath corners;
    corners.addRoundedRect(area, radius, radius);
    corners.addRect(area);
    corners.setFillRule(Qt::OddEvenFill);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(corners, Qt::black);
    painter.restore();
}

}  // namespace

GlassSurface::GlassSurface(UserSettings& settings, double cornerRadius, QWidget* parent)
    : QWidget(parent), settings_(settings), cornerRadius_(cornerRadius), glass_(effect_.makeNSView()) {
    window()->setAttribute(Qt::WA_TranslucentBackground);
    const auto repaint = [this](const auto&) { update(); };
    subscriptions_.push_back(settings.themePalette.subscribe(repaint));
    subscriptions_.push_back(settings.glassMaterial.subscribe(repaint));
    subscriptions_.push_back(settings.halftoneIntensity.subscribe(repaint));
    subscriptions_.push_back(settings.halftonePattern.subscribe(repaint));
    subscriptions_.push_back(settings.progressiveBlurFade.subscribe(repaint));
}

GlassSurface::~GlassSurface() = default;

void GlassSurface::setCornerRadius(double radius) {
    if (radius == cornerRadius_) {
        return;
    }
    cornerRadius_ = radius;
    shapeToWindow();
    update();
}

std::optional<PlacedHalftoneField> GlassSurface::halftone() const {
    return std::nullopt;
}

GlassSurface::Backdrop GlassSurface::wantedBackdrop() const {
    const bool isHighContrast = KestroTheme::isHighContrast();
    Backdrop backdrop;
    backdrop.size = size();
    backdrop.scale = devicePixelRatioF();
    backdrop.zoom = zoomOf(*this);
    backdrop.cornerRadius = cornerRadius_;
    backdrop.effect = effect_;
    backdrop.isHighContrast = isHighContrast;
    backdrop.hasEdgeFade = settings_.progressiveBlurFade.get() && isComposited_ && !isHighContrast;
    backdrop.palette = settings_.themePalette.get();
    backdrop.intensity = isHighContrast ? HalftoneIntensity::off : settings_.halftoneIntensity.get();
    backdrop.halftone = halftone();
    return backdrop;
}

QImage GlassSurface::renderBackdrop(const Backdrop& backdrop) const {
    QImage image((QSizeF(backdrop.size) * backdrop.scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(backdrop.scale);
    image.fill(Qt::transparent);
    const QRectF area(QPointF(), QSizeF(backdrop.size) / backdrop.zoom);
    QPainter painter(&image);
    painter.scale(backdrop.zoom, backdrop.zoom);
    glass_->paint(painter, area, isActiveWindow());
    if (backdrop.halftone) {
        backdrop.halftone->field.paint(painter, backdrop.halftone->area, backdrop.intensity);
    }
    if (backdrop.hasEdgeFade) {
        ProgressiveBlurFade::apply(painter, area);
    }
    if (isComposited_) {
        cutCorners(painter, area, backdrop.cornerRadius);
    }
    kestroHairlineBorder(painter, area, backdrop.cornerRadius, KestroTheme::hairlineStrong());
    return image;
}

void GlassSurface::paintEvent(QPaintEvent* event) {
    effect_.material = nsMaterial(settings_.glassMaterial.get());
    effect_.blendingMode =
        isComposited_ ? VisualEffectBlendingMode::behindWindow : VisualEffectBlendingMode::withinWindow;
    effect_.updateNSView(*glass_);
    const Backdrop wanted = wantedBackdrop();
    if (!rendered_ || !(*rendered_ == wanted)) {
        if (rendered_ && rendered_->scale != wanted.scale) {
            shapeToWindow();
        }
        image_ = renderBackdrop(wanted);
        rendered_ = std::make_unique<Backdrop>(wanted);
        ++renderCount_;
    }
    QPainter painter(this);
    // A translucent window is already cleared, so blending is unnecessary.
    painter.setCompositionMode(isWindow() ? QPainter::CompositionMode_Source
                                          : QPainter::CompositionMode_SourceOver);
    for (const QRect& rect : event->region()) {
        const QRectF source(QPointF(rect.topLeft()) * image_.devicePixelRatio(),
                            QSizeF(rect.size()) * image_.devicePixelRatio());
        // Inside a single rectangle Qt copies the pixels; inside a region it composes them, in several threads.
        if (devicePixelRatio() == devicePixelRatioF()) {
            painter.setClipRect(rect);
        }
        painter.drawImage(QRectF(rect), image_, source);
    }
}

void GlassSurface::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    lookAtCompositing();
    shapeToWindow();
    if (window_compositing::canChange()) {
        compositingCheck_.start(compositingCheckMilliseconds, Qt::VeryCoarseTimer, this);
    }
}

void GlassSurface::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    compositingCheck_.stop();
    rendered_.reset();
    image_ = {};
}

void GlassSurface::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    shapeToWindow();
}

void GlassSurface::timerEvent(QTimerEvent* event) {
    if (event->timerId() != compositingCheck_.timerId()) {
        QWidget::timerEvent(event);
    } else if (lookAtCompositing()) {
        shapeToWindow();
        update();
    }
}

/// Returns true when something has changed.
bool GlassSurface::lookAtCompositing() {
    const bool wasComposited = std::exchange(isComposited_, window_compositing::isAvailable());
    const bool wasBlurWanted = std::exchange(isBlurWanted_, window_compositing::canBlurBehind());
    return isComposited_ != wasComposited || isBlurWanted_ != wasBlurWanted;
}

void GlassSurface::shapeToWindow() {
    if (!isVisible()) {
        return;
    }
    const double radius = cornerRadius_ * zoomOf(*this);
    shapeWindow(*window(), radius, isComposited_);
    QWindow* const handle = window()->windowHandle();
    if (isBlurWanted_ && handle != nullptr) {
        window_compositing::requestBlurBehind(*handle,
                                              isComposited_ ? roundedPixels(*window(), radius) : QRegion());
    }
}

}  // namespace kestro
