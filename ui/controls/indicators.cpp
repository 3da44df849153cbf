#include "ui/controls/indicators.h"

#include "ui/controls/control.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/color_mix.h"
#include "ui/theme/kestro_theme.h"

#include <QPainter>

namespace kestro {

namespace {

constexpr double knobDiameter = 14;
constexpr double knobInset = 2;
constexpr double brighten = 0.15;
constexpr double pressedShade = 0.14;

void paintMark(QPainter& painter, const QRectF& area, const IndicatorState& state, const char* onSymbol,
               const char* offSymbol) {
    const bool isOn = state.on >= 0.5;
    const QColor rest = isOn ? KestroTheme::accentCool() : KestroTheme::textSecondary();
    const QColor raised = mixed(rest, Qt::white, brighten * state.hovering);
    const QColor color = mixed(raised, Qt::black, pressedShade * state.pressing);
    SymbolPainter::paint(painter, QString::fromLatin1(isOn ? onSymbol : offSymbol), area, color);
}

}  // namespace

QRectF switchKnob(const QRectF& area, double on) {
    const double travel = area.width() - knobDiameter - 2 * knobInset;
    return {area.left() + knobInset + travel * on, area.top() + (area.height() - knobDiameter) / 2, knobDiameter,
            knobDiameter};
}

void paintSwitch(QPainter& painter, const QRectF& area, const IndicatorState& state) {
    const double radius = area.height() / 2;
    const double offOpacity = StateOpacity{0.10, 0.15, 0.07}.at(state.hovering, state.pressing);
    const QColor accent = KestroTheme::accentCool();
    if (state.on < 1) {
        paintRounded(painter, area, radius, Ink::white(offOpacity * (1 - state.on)).color());
        kestroHairlineBorder(painter, area, radius, KestroTheme::hairlineStrong());
    }
    if (state.on > 0) {
        QColor fill = accentFill(accent, state.hovering, state.pressing);
        fill.setAlphaF(static_cast<float>(state.on));
        paintRounded(painter, area, radius, fill);
    }
    // The knob is grey while off, and gets its full colour on the accent.
    const QColor off = QColor::fromRgbF(0.72F, 0.73F, 0.75F);
    const QColor knob = mixed(off, markOn(accent), state.on);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(knob, Qt::black, pressedShade * state.pressing));
    painter.drawEllipse(switchKnob(area, state.on));
}

void paintCheckMark(QPainter& painter, const QRectF& area, const IndicatorState& state) {
    paintMark(painter, area, state, "checkmark.square.fill", "square");
}

void paintRadioMark(QPainter& painter, const QRectF& area, const IndicatorState& state) {
    paintMark(painter, area, state, "circle.inset.filled", "circle");
}

void paintChosenMark(QPainter& painter, const QRectF& area, const IndicatorState& state) {
    paintMark(painter, area, state, "checkmark.circle.fill", "circle");
}

}  // namespace kestro
