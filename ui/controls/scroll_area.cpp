#include "ui/controls/scroll_area.h"

#include "ui/controls/control.h"
#include "ui/paint/focus_ring.h"
#include "ui/paint/ink.h"
#include "ui/paint/surface_paint.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QImage>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace kestro {

namespace {

constexpr double topFade = 14;
constexpr double bottomFade = 18;
constexpr double thumbWidth = 5;
constexpr double thumbMargin = 4;
constexpr double shortestThumb = 32;
constexpr int thumbHitWidth = 14;
constexpr double restOpacity = 0.16;
constexpr double hoverOpacity = 0.28;

/// Keeps the focused control and its ring clear of the fades.
constexpr int focusMargin = 24;

}  // namespace

/// Fades the content at one edge into the surface behind. It overlays only that edge, so that changes elsewhere
/// repaint only themselves.
class EdgeFade : public QWidget {
public:
    EdgeFade(Qt::Edge edge, QWidget* parent) : QWidget(parent), edge_(edge) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QLinearGradient gradient(0, 0, 0, height());
        gradient.setColorAt(edge_ == Qt::TopEdge ? 0 : 1, Qt::black);
        gradient.setColorAt(edge_ == Qt::TopEdge ? 1 : 0, Qt::transparent);
        const QImage behind = surfaceBehind(gradient);
        // Blends as if the content had been masked before it was painted.
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter.fillRect(rect(), gradient);
        painter.setCompositionMode(QPainter::CompositionMode_Plus);
        painter.drawImage(0, 0, behind);
    }

private:
    /// The surface behind the area, with the opacity of `mask`.
    QImage surfaceBehind(const QBrush& mask) const {
        const double scale = devicePixelRatioF();
        QImage image((QSizeF(size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::transparent);
        if (QWidget* surface = parentWidget()->parentWidget()) {
            const QRect place(mapTo(surface, QPoint()), size());
            surface->render(&image, QPoint(), QRegion(place), QWidget::RenderFlags());
        }
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(rect(), mask);
        return image;
    }

    Qt::Edge edge_;
};

/// The thumb over the content's right margin. Dragging it scrolls.
class ScrollThumb : public QWidget {
public:
    ScrollThumb(QScrollBar& bar, QWidget* parent) : QWidget(parent), bar_(bar) { setAttribute(Qt::WA_Hover); }

protected:
    void paintEvent(QPaintEvent*) override {
        const QRectF thumb = scrollThumb(width(), height(), bar_.value(), bar_.maximum());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const double opacity = underMouse() ? hoverOpacity : restOpacity;
        paintRounded(painter, thumb, thumbWidth / 2, Ink::white(opacity).color());
    }

    void mousePressEvent(QMouseEvent* event) override {
        const QRectF thumb = scrollThumb(width(), height(), bar_.value(), bar_.maximum());
        const double y = event->position().y();
        const bool isOnThumb = y >= thumb.top() && y <= thumb.bottom();
        grip_ = isOnThumb ? y - thumb.top() : thumb.height() / 2;
        moveTo(y);
    }

    void mouseMoveEvent(QMouseEvent* event) override { moveTo(event->position().y()); }

private:
    void moveTo(double y) {
        const double room = height() - scrollThumb(width(), height(), 0, bar_.maximum()).height();
        bar_.setValue(room > 0 ? qRound((y - grip_) / room * bar_.maximum()) : 0);
    }

    QScrollBar& bar_;
    double grip_ = 0;
};

EdgeFades edgeFades(int position, int maximum) {
    return {position > 0 ? topFade : 0, position < maximum ? bottomFade : 0};
}

QRectF scrollThumb(double width, double viewHeight, int position, int maximum) {
    if (maximum <= 0 || viewHeight <= 0) {
        return {};
    }
    const double length =
        std::min(viewHeight, std::max(shortestThumb, viewHeight * viewHeight / (viewHeight + maximum)));
    const double top = (viewHeight - length) * std::clamp(position, 0, maximum) / maximum;
    return {width - thumbMargin - thumbWidth, top, thumbWidth, length};
}

ScrollArea::ScrollArea(QWidget* content, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    setWidget(content);
    content->setAutoFillBackground(false);
    FocusRing::setHost(*content);
    opacity_ = new QGraphicsOpacityEffect(viewport());
    opacity_->setEnabled(false);
    viewport()->setGraphicsEffect(opacity_);
    topFade_ = new EdgeFade(Qt::TopEdge, this);
    bottomFade_ = new EdgeFade(Qt::BottomEdge, this);
    thumb_ = new ScrollThumb(*verticalScrollBar(), this);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ScrollArea::follow);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &ScrollArea::follow);
    connect(qApp, &QApplication::focusChanged, this, &ScrollArea::reveal);
    follow();
}

void ScrollArea::setContentOpacity(double opacity) {
    opacity_->setOpacity(opacity);
    opacity_->setEnabled(opacity < 1);
}

void ScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    thumb_->setGeometry(width() - thumbHitWidth, 0, thumbHitWidth, height());
    follow();
}

void ScrollArea::reveal(const QWidget* before, QWidget* focused) {
    // Reactivating the window keeps the scroll position, and the pointer only focuses what is already visible.
    auto* control = qobject_cast<Control*>(focused);
    const bool isFromKeyboard = before != nullptr && control != nullptr && control->showsFocus();
    if (isFromKeyboard && isVisible() && widget()->isAncestorOf(control)) {
        ensureWidgetVisible(control, 0, focusMargin);
    }
}

void ScrollArea::follow() {
    const QScrollBar& bar = *verticalScrollBar();
    const EdgeFades fades = edgeFades(bar.value(), bar.maximum());
    const auto show = [this](EdgeFade& fade, double y, double height) {
        fade.setGeometry(QRectF(0, y, width(), height).toRect());
        fade.setVisible(height > 0);
    };
    show(*topFade_, 0, fades.top);
    show(*bottomFade_, height() - fades.bottom, fades.bottom);
    thumb_->setVisible(bar.maximum() > 0);
    thumb_->update();
}

}  // namespace kestro
