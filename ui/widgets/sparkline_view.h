#pragma once

#include "ui/controls/view.h"
#include "ui/paint/ink.h"

#include <QPolygonF>

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace kestro {

/// The top of a sparkline's scale: the limit when there is one, else the largest value, at least 1.
double sparklineTop(std::span<const double> values, std::optional<double> maxLimit);

/// Maps `values` (oldest first) onto `area`, clamped to 0..`top`, larger values higher. Fewer than two
/// values: empty.
QPolygonF sparklinePoints(std::span<const double> values, double top, const QRectF& area);

/// A history as a line over a fading area, on three hairlines at the bottom, the middle and the top.
///
/// The line is inset by lineBleed on all sides, so that its stroke is not clipped at the edges.
class SparklineView : public View {
    Q_OBJECT

public:
    static constexpr int lineBleed = 1;

    explicit SparklineView(const Ink& tintColor, std::optional<double> maxLimit = std::nullopt,
                           QWidget* parent = nullptr);

    /// Oldest first. No-op when unchanged.
    void setData(const std::vector<double>& history);

    /// The accessible text: "`name` history, now …, highest …". `unit` follows only the current value; `format`
    /// formats both values.
    void setSpoken(const QString& name, std::function<QString(double)> format, const QString& unit = {});

    /// Names the value of the full height at the top left, while `showTop` is on.
    void setTopText(std::function<QString(double)> text);
    void showTop(bool isShown);

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<double> data_;
    Ink tintColor_;
    std::optional<double> maxLimit_;
    QString name_;
    QString unit_;
    std::function<QString(double)> format_;
    std::function<QString(double)> topText_;
    bool isTopShown_ = false;
};

}  // namespace kestro
