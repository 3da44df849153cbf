#pragma once

#include "ui/controls/view.h"
#include "ui/fancurve/fan_curve_plot.h"
#include "ui/paint/ink.h"
#include "ui/theme/kestro_theme.h"

#include <QString>

class QPainter;

namespace kestro {

/// The chart's data for one fan. Temperatures in degrees Celsius, speeds in revolutions per minute.
struct FanCurveReading {
    FanCurveConfig config;
    double currentTemp = 0;
    double currentRPM = 0;
    double targetRPM = 0;  ///< the speed that the curve currently requests
    QString fanName;
    Ink accentColor = KestroTheme::accentCool;
    double minDisplayTemp = 30;
    double maxDisplayTemp = 100;
    double maxDisplayRPM = 8000;
    bool isMeasured = true;  ///< otherwise no sensor gave the live point: dimmed, with a help text

    /// "Live: 52.4°C · 1420 RPM", always in degrees Celsius like the axis, and "(Target: 1499 RPM)".
    QString liveText() const;
    QString targetText() const;

    /// "T_low (48°)" and "T_max (84°)".
    QString lowLabel() const;
    QString highLabel() const;

    friend bool operator==(const FanCurveReading&, const FanCurveReading&) = default;
};

/// The response chart of a fan curve with its zones, its two anchors and the live operating point, below a line
/// with the figures. Display only: nothing can be dragged. Assistive technology reads the live text and both
/// anchors.
class FanCurveCanvasView : public View {
    Q_OBJECT

public:
    static constexpr int headerHeight = 16;
    static constexpr int canvasHeight = 220;

    explicit FanCurveCanvasView(QWidget* parent = nullptr);

    /// Repaints when anything has changed.
    void setReading(const FanCurveReading& reading);
    const FanCurveReading& reading() const { return reading_; }

    QSize sizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintHeader(QPainter& painter) const;
    void paintBands(QPainter& painter, const FanCurvePlot& plot) const;
    void paintGrid(QPainter& painter, const FanCurvePlot& plot) const;
    void paintCurve(QPainter& painter, const FanCurvePlot& plot) const;
    void paintAnchors(QPainter& painter, const FanCurvePlot& plot) const;
    void paintLivePoint(QPainter& painter, const FanCurvePlot& plot) const;

    FanCurveReading reading_;
};

}  // namespace kestro
