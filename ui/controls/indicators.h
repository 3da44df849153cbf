#pragma once

#include <QRectF>

class QPainter;

namespace kestro {

/// The marks of what can be on or off, painted by the standalone controls and by rows alike. `hovering` and
/// `pressing` are 0..1.
struct IndicatorState {
    double on = 0;  ///< 0..1: how far the knob has slid; marks count as on from a half
    double hovering = 0;
    double pressing = 0;
};

/// The width and height of each mark in points.
inline constexpr double kSwitchWidth = 32;
inline constexpr double kSwitchHeight = 18;
inline constexpr double kCheckSize = 15;
inline constexpr double kRadioSize = 14;
inline constexpr double kChosenMarkSize = 16;

/// The knob of a switch in `area`, slid `on` (0..1) of its way.
QRectF switchKnob(const QRectF& area, double on);

void paintSwitch(QPainter& painter, const QRectF& area, const IndicatorState& state);
void paintCheckMark(QPainter& painter, const QRectF& area, const IndicatorState& state);
void paintRadioMark(QPainter& painter, const QRectF& area, const IndicatorState& state);

/// A filled disc with a check when on, an empty circle otherwise.
void paintChosenMark(QPainter& painter, const QRectF& area, const IndicatorState& state);

}  // namespace kestro
