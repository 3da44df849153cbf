#pragma once

#include "ui/controls/control.h"

#include <QStringList>

namespace kestro {

/// One of a segmented choice's options: its text, and a second text shown after it.
struct Segment {
    QString text;
    QString detail;

    friend bool operator==(const Segment&, const Segment&) = default;
};

/// The areas of `count` equal segments in a frame of `size`: frame padding 2, gaps 2.
std::vector<QRectF> segmentAreas(const QSizeF& size, int count);

/// A choice of one among a few, side by side in one frame. One stop of the Tab key; the arrows, Home and End
/// choose. The mark of the chosen segment slides.
class SegmentedChoice : public Control {
    Q_OBJECT

public:
    explicit SegmentedChoice(std::vector<Segment> segments, int height = 34, QWidget* parent = nullptr);

    /// Shows a choice without telling anybody; none when out of range. Silent when equal.
    void setChosen(int index);
    int chosen() const { return chosen_; }

    /// Replaces the texts; as many as before. Silent when equal.
    void setSegments(std::vector<Segment> segments);

    /// Called with the index after the user has chosen another segment.
    void onChosen(std::function<void(int)> action) { onChosen_ = std::move(action); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    AccessibleInfo accessibleInfo() const override;
    std::vector<AccessibleInfo> accessibleParts() const override;

protected:
    void paint(QPainter& painter) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(int index);
    int indexAt(const QPointF& position) const;
    void paintSegment(QPainter& painter, int index, const QRectF& area) const;

    std::vector<Segment> segments_;
    int height_;
    int chosen_ = -1;
    int hovered_ = -1;
    int pressed_ = -1;
    Transition mark_;
    std::function<void(int)> onChosen_;
};

}  // namespace kestro
