#include "ui/paint/focus_ring.h"

#include "ui/paint/zoom.h"
#include "ui/theme/kestro_theme.h"

#include <QEvent>
#include <QPainter>

#include <cmath>

namespace kestro {

namespace {

constexpr const char* hostProperty = "kestroFocusRingHost";
constexpr double ringRoom = 4;

QWidget* hostOf(const QWidget& control) {
    QWidget* host = control.parentWidget();
    while (host && !host->isWindow() && !host->property(hostProperty).toBool()) {
        host = host->parentWidget();
    }
    return host;
}

QPointer<FocusRing> shownRing;

}  // namespace

void FocusRing::showOn(QWidget& control, const FocusRingTarget& target) {
    if (shownRing && shownRing->control_ == &control) {
        shownRing->place();
        return;
    }
    delete shownRing;
    if (hostOf(control)) {
        shownRing = new FocusRing(control, target);
    }
}

void FocusRing::hideFrom(QWidget& control) {
    if (shownRing && shownRing->control_ == &control) {
        shownRing->hide();
        shownRing->deleteLater();
        shownRing.clear();
    }
}

FocusRing::FocusRing(QWidget& control, const FocusRingTarget& target)
    : QWidget(hostOf(control)), control_(&control), target_(target) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    for (QWidget* widget = &control; widget && widget != parentWidget(); widget = widget->parentWidget()) {
        widget->installEventFilter(this);
    }
    connect(&control, &QObject::destroyed, this, [this] {
        hide();
        deleteLater();
    });
    place();
}

void FocusRing::setHost(QWidget& widget) {
    widget.setProperty(hostProperty, true);
}

bool FocusRing::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
            place();
            break;
        default:
            break;
    }
    return false;
}

void FocusRing::paintEvent(QPaintEvent*) {
    if (!control_) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area =
        target_.focusArea().translated(mapFrom(parentWidget(), control_->mapTo(parentWidget(), QPoint())));
    const double zoom = zoomOf(*control_);
    const double radius = target_.focusRadius() * zoom;
    const auto strokeAt = [&](double distance, double width, const QColor& color) {
        const double middle = (distance + width / 2) * zoom;
        painter.setPen(QPen(color, width * zoom));
        painter.drawRoundedRect(area.adjusted(-middle, -middle, middle, middle), radius + middle, radius + middle);
    };
    strokeAt(0, ringGap, KestroTheme::ground());
    strokeAt(ringGap, ringWidth, KestroTheme::accentCool());
}

void FocusRing::place() {
    if (!control_ || !control_->isVisibleTo(parentWidget())) {
        hide();
        return;
    }
    const int outside = static_cast<int>(std::ceil(ringRoom * zoomOf(*control_)));
    const QRect area = target_.focusArea().toAlignedRect();
    setGeometry(
        area.translated(control_->mapTo(parentWidget(), QPoint())).adjusted(-outside, -outside, outside, outside));
    show();
    raise();
    update();
}

}  // namespace kestro
