#pragma once

#include "ui/controls/view.h"
#include "ui/paint/ink.h"
#include "ui/paint/zoom.h"

namespace kestro {

/// The value arc's end as a position on the circumference: from 0.15 (no arc) to 0.85. An empty or inverted
/// range has no arc.
double gaugeArcEnd(double value, double minVal, double max);

/// A position on the circumference as degrees clockwise from three o'clock; the gap is at the bottom.
double gaugeAngle(double position);

/// The sizes of a gauge in points.
struct GaugeMetrics {
    double frame;
    double lineWidth;
    double valueSize;
    double unitSize;
    double titleSize;
    double subtitleSize;
    double titleTop;
    double titleHeight;
    double subtitleHeight;

    /// The room for value and unit side by side.
    double innerWidth() const { return frame - 2 * lineWidth - 8; }
    double height() const { return titleTop + titleHeight + subtitleHeight; }
};
const GaugeMetrics& gaugeMetrics(bool isCompact);

/// The content of a gauge.
struct GaugeContent {
    QString title;
    QString subtitle;
    double value = 0;
    double minVal = 0;
    double max = 100;
    QString unit;
    Ink tintColor = QColor(Qt::white);
    bool isMeasured = true;  ///< otherwise no sensor gave the value: dimmed, with a help text and without an arc
    QString help = {};       ///< of a measured value

    friend bool operator==(const GaugeContent&, const GaugeContent&) = default;
};

/// A value as an open ring with its figure inside and two captions below. The ring is centred at the top of the
/// widget, whose width is free; the captions may use the full width.
class MetricGauge : public View, public ZoomedView {
    Q_OBJECT

public:
    explicit MetricGauge(bool isCompact, QWidget* parent = nullptr);

    /// No-op when nothing visible changed; otherwise repaints only the changed part: the ring or the captions.
    void setContent(const GaugeContent& content);
    const GaugeContent& content() const { return content_; }

    void setCompact(bool isCompact);

    /// Enlarges ring, figure and captions alike.
    void setGrowth(double growth);
    double zoom() const override { return growth_; }

    /// The scale at which value and unit fit in the ring, 0.8..1, for gauges that share a scale.
    double fittingTextScale() const;
    void setTextScale(double scale);

    QSize sizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF frame() const;

    double arcEnd(const GaugeContent& content) const;

    /// The unit, or empty if it would touch the ring even at the smallest scale; the captions must then name it.
    QString shownUnit() const;
    double figureWidth(const QString& unit) const;
    void paintRing(QPainter& painter) const;
    void paintFigure(QPainter& painter) const;
    void paintCaptions(QPainter& painter) const;

    GaugeContent content_;
    bool isCompact_;
    double growth_ = 1;
    double textScale_ = 1;
    double drawnEnd_ = 0;  ///< the arc's end at the last requested repaint of the ring
};

}  // namespace kestro
