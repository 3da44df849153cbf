#pragma once

#include <QScrollArea>

class QGraphicsOpacityEffect;

namespace kestro {

class EdgeFade;
class ScrollThumb;

/// How much of a scrolled view's edges fade, in points; 0: not at all.
struct EdgeFades {
    double top = 0;
    double bottom = 0;

    friend bool operator==(const EdgeFades&, const EdgeFades&) = default;
};

/// 14 at the top once scrolled, 18 at the bottom while more follows.
EdgeFades edgeFades(int position, int maximum);

/// The thumb of a bar beside a view of `viewHeight`, scrolled to `position` of 0..`maximum`: 5 wide, 4 from
/// the right edge of `width`, at least 32 long. Empty when nothing scrolls.
QRectF scrollThumb(double width, double viewHeight, int position, int maximum);

/// Content that scrolls vertically when it is taller than the area: without frame or track, with a thin thumb
/// and edges that fade into what its parent paints. Takes the width of the area. Scrolls to what the keyboard
/// focuses.
class ScrollArea : public QScrollArea {
    Q_OBJECT

public:
    /// Takes `content` over.
    explicit ScrollArea(QWidget* content, QWidget* parent = nullptr);

    /// How much of the content shows, 0..1: an area that comes or goes.
    void setContentOpacity(double opacity);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void follow();
    void reveal(const QWidget* before, QWidget* focused);

    QGraphicsOpacityEffect* opacity_;
    EdgeFade* topFade_;
    EdgeFade* bottomFade_;
    ScrollThumb* thumb_;
};

}  // namespace kestro
