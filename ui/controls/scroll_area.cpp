#include "ui/controls/scroll_area.h"

#include "ui/controls/focus_ring.h"
#include "ui/controls/ink.h"
#include "ui/controls/surface_paint.h"

#include <QGraphicsEffect>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace kestro {

namespace {

constexpr double kTopFade = 14;
constexpr double kBottomFade = 18;
constexpr double kThumbWidth = 5;
constexpr double kThumbMargin = 4;
constexpr double kShortestThumb = 32;
constexpr int kThumbHitWidth = 14;
constexpr double kRestOpacity = 0.16;
constexpr double kHoverOpacity = 0.28;

/// Lets what is scrolled out of sight vanish gradually. The glass behind shows through, so the fade is a mask
/// of the content, not a paint over it.
class FadeEffect : public QGraphicsEffect {
public:
    using QGraphicsEffect::QGraphicsEffect;

    void setFades(const EdgeFades& fades) {
        if (fades != fades_) {
            fades_ = fades;
            changed();
        }
    }

    void setOpacity(double opacity) {
        if (opacity != opacity_) {
            opacity_ = opacity;
            changed();
        }
    }

protected:
    void draw(QPainter* painter) override {
        QPoint offset;
        QPixmap picture = sourcePixmap(Qt::LogicalCoordinates, &offset, NoPad);
        const double height = picture.height() / picture.devicePixelRatio();
        const double width = picture.width() / picture.devicePixelRatio();
        QPainter mask(&picture);
        mask.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        const auto fade = [&](double from, double to) {
            QLinearGradient gradient(0, from, 0, to);
            gradient.setColorAt(0, Qt::transparent);
            gradient.setColorAt(1, Qt::black);
            mask.fillRect(QRectF(0, std::min(from, to), width, std::abs(to - from)), gradient);
        };
        if (fades_.top > 0) {
            fade(0, fades_.top);
        }
        if (fades_.bottom > 0) {
            fade(height, height - fades_.bottom);
        }
        mask.end();
        painter->setOpacity(opacity_);
        painter->drawPixmap(offset, picture);
    }

private:
    void changed() {
        setEnabled(fades_ != EdgeFades{} || opacity_ < 1);
        update();
    }

    EdgeFades fades_;
    double opacity_ = 1;
};

}  // namespace

/// The thumb over the content's right margin. Dragging it scrolls.
class ScrollThumb : public QWidget {
public:
    ScrollThumb(QScrollBar& bar, QWidget* parent) : QWidget(parent), bar_(bar) { setAttribute(Qt::WA_Hover); }

protected:
    void paintEvent(QPaintEvent*) override {
        const QRectF thumb = scrollThumb(width(), height(), bar_.value(), bar_.maximum());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const double opacity = underMouse() ? kHoverOpacity : kRestOpacity;
        paintRounded(painter, thumb, kThumbWidth / 2, Ink::white(opacity).color());
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
    return {position > 0 ? kTopFade : 0, position < maximum ? kBottomFade : 0};
}

QRectF scrollThumb(double width, double viewHeight, int position, int maximum) {
    if (maximum <= 0 || viewHeight <= 0) {
        return {};
    }
    const double length =
        std::min(viewHeight, std::max(kShortestThumb, viewHeight * viewHeight / (viewHeight + maximum)));
    const double top = (viewHeight - length) * std::clamp(position, 0, maximum) / maximum;
    return {width - kThumbMargin - kThumbWidth, top, kThumbWidth, length};
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
    viewport()->setGraphicsEffect(new FadeEffect(viewport()));
    viewport()->graphicsEffect()->setEnabled(false);
    thumb_ = new ScrollThumb(*verticalScrollBar(), this);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ScrollArea::follow);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &ScrollArea::follow);
    follow();
}

void ScrollArea::setContentOpacity(double opacity) {
    static_cast<FadeEffect*>(viewport()->graphicsEffect())->setOpacity(opacity);
}

void ScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    thumb_->setGeometry(width() - kThumbHitWidth, 0, kThumbHitWidth, height());
    follow();
}

void ScrollArea::follow() {
    const QScrollBar& bar = *verticalScrollBar();
    static_cast<FadeEffect*>(viewport()->graphicsEffect())->setFades(edgeFades(bar.value(), bar.maximum()));
    thumb_->setVisible(bar.maximum() > 0);
    thumb_->update();
}

}  // namespace kestro
