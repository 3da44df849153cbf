#pragma once

#include <QScrollArea>

class QGraphicsOpacityEffect;

namespace kestro {

class EdgeFade;
class ScrollThumb;

/// How far the edges of a scrolled view fade, in points; 0: no fade.
struct EdgeFades {
    double top = 0;
    double bottom = 0;

    friend bool operator==(const EdgeFades&, const EdgeFades&) = default;
};

/// 14 at the top once scrolled, 18 at the bottom while there is more content.
EdgeFades edgeFades(int position, int maximum);

/// The thumb beside a view of `viewHeight`, scrolled to `position` in 0..`maximum`: 5 wide, 4 from the right edge
/// of `width`, at least 32 long. Empty when nothing scrolls.
QRectF scrollThumb(double width, double viewHeight, int position, int maximum);

/// Scrolls its content vertically when it is taller than the area. It has no frame or track, only a thin thumb and
/// edges that fade into its parent's background. The content gets the width of the area. Scrolls to controls
/// focused by keyboard.
class ScrollArea : public QScrollArea {
    Q_OBJECT

public:
    /// Takes ownership of `content`.
    explicit ScrollArea(QWidget* content, QWidget* parent = nullptr);

    /// The opacity of the content, 0..1, for fading an area in or out.
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
