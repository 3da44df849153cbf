#include "ui/decorations/studio_halftone_field.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kestro {

namespace {

constexpr std::uint32_t step1 = 0x6D2B79F5U;
constexpr std::uint32_t step2 = static_cast<std::uint32_t>(-631835670);
constexpr std::uint32_t step3 = 1199730143U;

constexpr double areaPerDot = 2600;
constexpr double fewestDots = 24;

constexpr std::array inkOrder{
    HalftoneInk::cyan,   HalftoneInk::magenta, HalftoneInk::yellow,  HalftoneInk::cyan,   HalftoneInk::magenta,
    HalftoneInk::yellow, HalftoneInk::cyan,    HalftoneInk::magenta, HalftoneInk::yellow, HalftoneInk::paper,
};

constexpr std::array factors{0.0, 0.48, 1.0, 1.8};

/// The random fractions that define one dot, named by use.
struct Draws {
    double b;
    double u2;
    double u3;
    double size;
    double ink;
    double opacity;
};

/// Draws one dot's fractions and advances the generator's state.
Draws nextDraws(std::uint32_t& state) {
    Draws draws{};
    draws.b = halftoneFraction(state + step1);
    draws.u2 = halftoneFraction(state + step2);
    draws.size = halftoneFraction(state + step3);
    state += step3;
    draws.ink = halftoneFraction(state + step1);
    draws.opacity = halftoneFraction(state + step2);
    draws.u3 = halftoneFraction(state + step3);
    state += step3;
    return draws;
}

QPointF bandCentre(const Draws& draws, QSizeF size) {
    return {size.width() * std::pow(draws.b, 1.9) * 1.45, size.height() * (draws.u2 * 1.7 - 0.35)};
}

QPointF auraCentre(const Draws& draws, QSizeF size, const StudioHalftoneField& field) {
    const double reach = std::max(size.width(), size.height()) * 0.6;
    const double angle = 2 * std::numbers::pi * draws.b;
    const double distance = reach * (std::pow(draws.u2, 1.3) * 0.85 + 0.46);
    return {size.width() * field.focusX + std::cos(angle) * distance,
            size.height() * field.focusY + std::sin(angle) * distance * 0.92};
}

QPointF cornerCentre(const Draws& draws, QSizeF size, const StudioHalftoneField& field) {
    const double reach = std::min(size.width(), size.height()) * 0.9;
    const double x = reach * std::pow(draws.b, 1.7);
    const double y = reach * std::pow(draws.u2, 1.7) * 0.8;
    return {field.focusX >= 0.5 ? size.width() - x : x, field.focusY >= 0.5 ? size.height() - y : y};
}

QPointF ruleCentre(const Draws& draws, QSizeF size, const StudioHalftoneField& field) {
    const double distance = 26 * std::pow(draws.u3, 2.2);
    const double axis = size.height() * field.focusY;
    return {size.width() * std::pow(draws.b, 1.25) * 1.1, draws.u2 < 0.5 ? axis - distance : axis + distance};
}

QPointF centre(const Draws& draws, QSizeF size, const StudioHalftoneField& field) {
    switch (field.shape) {
        case HalftoneShape::band:
            return bandCentre(draws, size);
        case HalftoneShape::aura:
            return auraCentre(draws, size, field);
        case HalftoneShape::corner:
            return cornerCentre(draws, size, field);
        case HalftoneShape::rule:
            return ruleCentre(draws, size, field);
    }
    return {};
}

}  // namespace

QColor halftoneInkColor(HalftoneInk ink) {
    switch (ink) {
        case HalftoneInk::cyan:
            return QColor::fromRgbF(0.0F, 0.682F, 0.937F);
        case HalftoneInk::magenta:
            return QColor::fromRgbF(0.925F, 0.0F, 0.549F);
        case HalftoneInk::yellow:
            return QColor::fromRgbF(1.0F, 0.949F, 0.0F);
        case HalftoneInk::paper:
            break;
    }
    return QColor::fromRgbF(1, 1, 1);
}

double halftoneFraction(std::uint32_t state) {
    std::uint32_t t = (state ^ (state >> 15)) * (state | 1U);
    // The multiplier is exactly 61: the texture depends on it.
    t = (t + (t ^ (t >> 7)) * 61U) ^ t;
    return static_cast<double>(t ^ (t >> 14)) / 4294967296.0;
}

double halftoneFactor(HalftoneIntensity intensity) {
    return factors[static_cast<std::size_t>(intensity)];
}

std::int64_t StudioHalftoneField::dotCount(QSizeF size) const {
    if (count <= 0 || !(size.width() > 0) || !(size.height() > 0)) {
        return 0;
    }
    const double wanted = std::max(fewestDots, std::round(size.width() * size.height() / areaPerDot));
    return wanted < static_cast<double>(count) ? static_cast<std::int64_t>(wanted) : count;
}

void StudioHalftoneField::forEachDot(QSizeF size, HalftoneIntensity intensity,
                                     const std::function<void(const HalftoneDot&)>& visit) const {
    const double base = halftoneFactor(intensity) * alpha;
    if (intensity == HalftoneIntensity::off) {
        return;
    }
    std::uint32_t state = seed;
    const std::int64_t total = dotCount(size);
    for (std::int64_t i = 0; i < total; ++i) {
        const Draws draws = nextDraws(state);
        const QPointF position = centre(draws, size, *this);
        const double q = std::pow(draws.size, 2.3);
        const auto ink = static_cast<std::size_t>(std::floor(draws.ink * 10)) % inkOrder.size();
        visit({position.x(), position.y(), minRadius + (maxRadius - minRadius) * q, inkOrder[ink],
               base * (1 - q * 0.45) * (draws.opacity * 0.45 + 0.55)});
    }
}

void StudioHalftoneField::paint(QPainter& painter, const QRectF& area, HalftoneIntensity intensity) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    forEachDot(area.size(), intensity, [&](const HalftoneDot& dot) {
        QColor color = halftoneInkColor(dot.ink);
        color.setAlphaF(static_cast<float>(std::clamp(dot.opacity, 0.0, 1.0)));
        painter.setBrush(color);
        painter.drawEllipse(area.topLeft() + QPointF(dot.x, dot.y), dot.radius, dot.radius);
    });
    painter.restore();
}

}  // namespace kestro
