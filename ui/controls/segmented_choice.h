#pragma once

#include "ui/controls/choice_bar.h"

#include <QStringList>

namespace kestro {

/// One option of a segmented choice: its text, and a second text after it.
struct Segment {
    QString text;
    QString detail;

    friend bool operator==(const Segment&, const Segment&) = default;
};

/// The areas of `count` equal segments in a frame of `size`: frame padding 2, gaps 2.
std::vector<QRectF> segmentAreas(const QSizeF& size, int count);

/// A choice of one among a few, side by side in one frame. The mark slides to the chosen segment.
class SegmentedChoice : public ChoiceBar {
    Q_OBJECT

public:
    explicit SegmentedChoice(std::vector<Segment> segments, int height = 34, QWidget* parent = nullptr);

    /// Out of range: none is chosen.
    void setChosen(int index) override;

    /// Replaces the texts; the count must stay the same. No-op when unchanged.
    void setSegments(std::vector<Segment> segments);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    AccessibleInfo accessibleInfo() const override;
    std::vector<AccessibleInfo> accessibleParts() const override;

protected:
    void paint(QPainter& painter) override;
    void keyPressEvent(QKeyEvent* event) override;
    std::vector<QRectF> areas() const override;

private:
    void paintSegment(QPainter& painter, int index, const QRectF& area) const;

    std::vector<Segment> segments_;
    int height_;
    Transition mark_;
};

}  // namespace kestro
