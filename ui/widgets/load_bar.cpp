#include "ui/widgets/load_bar.h"

#include "ui/paint/surface_paint.h"
#include "ui/widgets/visible_change.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double trackOpacity = 0.04;

}  // namespace

LoadBar::LoadBar(const Ink& tint, QWidget* parent) : View(parent), tint_(tint) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LoadBar::setFraction(double fraction) {
    const double clamped = fraction > 0 ? std::min(fraction, 1.0) : 0;
    const double pixels = std::abs(clamped - fraction_) * width() * devicePixelRatioF();
    if (pixels < visiblePixels && (clamped > 0) == (fraction_ > 0)) {
        return;
    }
    fraction_ = clamped;
    update();
}

QSize LoadBar::sizeHint() const {
    return {80, fixedHeight};
}

AccessibleInfo LoadBar::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::ProgressBar;
    info.isDecoration = info.name.isEmpty();
    info.range = AccessibleRange{fraction_ * 100, 0, 100, 1, {}};
    return info;
}

void LoadBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track(0, (height() - fixedHeight) / 2.0, width(), fixedHeight);
    paintBar(painter, track, fraction_, Ink::white(trackOpacity).color(), tint_.color());
}

}  // namespace kestro
