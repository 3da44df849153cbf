#pragma once

#include <QRectF>

class QPainter;

namespace kestro {

/// The marks of on/off states, shared by the standalone controls and the rows. `hovering` and `pressing` are 0..1.
struct IndicatorState {
    double on = 0;  ///< 0..1: how far the knob has slid; marks count as on from 0.5
    double hovering = 0;
    double pressing = 0;
};

/// The width and height of each mark in points.
inline constexpr double switchWidth = 32;
inline constexpr double switchHeight = 18;
inline constexpr double checkSize = 15;
inline constexpr double radioSize = 14;
inline constexpr double chosenMarkSize = 16;

/// The knob of a switch in `area`, slid by `on` (0..1).
QRectF switchKnob(const QRectF& area, double on);

void paintSwitch(QPainter& painter, const QRectF& area, const IndicatorState& state);
void paintCheckMark(QPainter& painter, const QRectF& area, const IndicatorState& state);
void paintRadioMark(QPainter& painter, const QRectF& area, const IndicatorState& state);

/// A filled disc with a check when on, an empty circle otherwise.
void paintChosenMark(QPainter& painter, const QRectF& area, const IndicatorState& state);

}  // namespace kestro
