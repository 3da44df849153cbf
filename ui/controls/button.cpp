#include "ui/controls/button.h"

#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/color_mix.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double cornerRadius = 6;
constexpr double plainRadius = 5;

/// The look of one kind in one of its two states.
struct Look {
    Ink fill;
    StateOpacity opacity;
    Ink border;
};

Look lookOf(ButtonKind kind, bool isOn) {
    const Ink white = Ink::white(1);
    const Ink none = Ink::white(0);
    switch (kind) {
        case ButtonKind::chip:
            if (isOn) {
                return {
                    KestroTheme::accentWarning, {0.15, 0.22, 0.10}, Ink(KestroTheme::accentWarning).faded(0.35)};
            }
            return {white, {0.04, 0.09, 0.02}, KestroTheme::hairline};
        case ButtonKind::choice:
            if (isOn) {
                return {KestroTheme::accentCool, {0.16, 0.22, 0.12}, Ink(KestroTheme::accentCool).faded(0.55)};
            }
            return {white, {0.06, 0.11, 0.03}, KestroTheme::hairlineStrong};
        case ButtonKind::regular:
            return {white, {0.06, 0.11, 0.03}, KestroTheme::hairlineStrong};
        case ButtonKind::plain:
            return {white, {0, 0.05, 0.03}, none};
        case ButtonKind::prominent:
            break;
    }
    return {KestroTheme::accentCool, {1, 1, 1}, none};
}

bool isChipLike(ButtonKind kind) {
    return kind == ButtonKind::chip || kind == ButtonKind::plain;
}

}  // namespace

ButtonGeometry buttonGeometry(const QSizeF& size, const ButtonParts& parts, bool isSpread) {
    const auto gapBefore = [&](double part) { return part > 0 ? parts.gap : 0; };
    const bool hasLead = parts.symbol > 0;
    const double fixed =
        parts.symbol + (hasLead && parts.text > 0 ? parts.gap : 0) +
        (parts.trailingSymbol > 0 ? parts.trailingSymbol + gapBefore(parts.symbol + parts.text) : 0);
    const double room = std::max(0.0, size.width() - 2 * parts.padding - fixed);
    const double text = isSpread && parts.text > 0 ? room : std::min(parts.text, room);
    const double content = fixed + text;
    double x = isSpread ? parts.padding : (size.width() - content) / 2;
    const auto place = [&](double width, double height) {
        const QRectF area(x, (size.height() - height) / 2, width, height);
        x += width;
        return area;
    };

    ButtonGeometry geometry;
    if (hasLead) {
        geometry.symbol = place(parts.symbol, parts.symbol);
        x += gapBefore(parts.text);
    }
    if (parts.text > 0) {
        geometry.text = place(text, size.height());
        x += gapBefore(parts.trailingSymbol);
    }
    if (parts.trailingSymbol > 0) {
        if (isSpread) {
            x = size.width() - parts.padding - parts.trailingSymbol;
        }
        geometry.trailingSymbol = place(parts.trailingSymbol, parts.trailingSymbol);
    }
    return geometry;
}

Button::Button(ButtonKind kind, QWidget* parent)
    : Control(parent),
      kind_(kind),
      height_(isChipLike(kind) ? 24 : 28),
      padding_(isChipLike(kind) ? 8 : 12),
      gap_(isChipLike(kind) ? 5 : 6) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Button::setSymbol(const QString& name, double size) {
    if (name != symbol_ || size != symbolSize_) {
        symbol_ = name;
        symbolSize_ = size;
        updateGeometry();
        update();
    }
}

void Button::setTrailingSymbol(const QString& name, double size) {
    trailingSymbol_ = name;
    trailingSymbolSize_ = size;
    updateGeometry();
    update();
}

void Button::setText(const QString& text) {
    if (text != text_) {
        text_ = text;
        updateGeometry();
        update();
    }
}

void Button::setKind(ButtonKind kind) {
    if (kind != kind_) {
        kind_ = kind;
        update();
    }
}

void Button::setSquare(int edge) {
    square_ = edge;
    updateGeometry();
}

void Button::setHeight(int height) {
    height_ = height;
    updateGeometry();
}

void Button::setPadding(double padding) {
    padding_ = padding;
    updateGeometry();
}

void Button::setGap(double gap) {
    gap_ = gap;
    updateGeometry();
}

void Button::setTextStyle(const TextStyle& style) {
    textStyle_ = style;
    updateGeometry();
    update();
}

void Button::setInk(const Ink& symbol, const Ink& text) {
    if (symbolInk_ != symbol || textInk_ != text) {
        symbolInk_ = symbol;
        textInk_ = text;
        update();
    }
}

void Button::setTrailingInk(const Ink& ink) {
    trailingInk_ = ink;
    update();
}

void Button::setSpread(bool isSpread) {
    isSpread_ = isSpread;
    update();
}

void Button::setOnFill(const StateOpacity& fill) {
    onFill_ = fill;
    update();
}

QRectF Button::focusArea() const {
    return QRectF(rect()).marginsRemoved(focusInset_ * zoomOf(*this));
}

QSize Button::sizeHint() const {
    if (square_ > 0) {
        return {square_, square_};
    }
    const ButtonParts p = parts();
    const int present = (p.symbol > 0) + (p.text > 0) + (p.trailingSymbol > 0);
    const double width = p.symbol + p.text + p.trailingSymbol + p.gap * std::max(0, present - 1) + 2 * p.padding;
    return {static_cast<int>(std::ceil(width)), height_};
}

QSize Button::minimumSizeHint() const {
    return {std::min(sizeHint().width(), 22), sizeHint().height()};
}

AccessibleInfo Button::accessibleInfo() const {
    AccessibleInfo info = Control::accessibleInfo();
    if (accessibleName().isEmpty() && !text_.isEmpty()) {
        info.name = text_;
    }
    if (kind_ == ButtonKind::choice) {
        info.role = QAccessible::RadioButton;
    }
    return info;
}

void Button::paint(QPainter& painter) {
    paintGround(painter);
    const ButtonGeometry geometry = buttonGeometry(designRect(*this).size(), parts(), isSpread_);
    if (!symbol_.isEmpty()) {
        SymbolPainter::paint(painter, symbol_, geometry.symbol, symbolInk().color());
    }
    drawText(painter, geometry.text, text_, effectiveTextStyle(), Qt::AlignLeft, TextFit::label);
    if (!trailingSymbol_.isEmpty()) {
        SymbolPainter::paint(painter, trailingSymbol_, geometry.trailingSymbol,
                             trailingInk_.value_or(symbolInk()).color());
    }
}

void Button::stateDidChange() {
    updateGeometry();
    update();
}

void Button::paintGround(QPainter& painter) const {
    const QRectF area = designRect(*this);
    if (kind_ == ButtonKind::prominent) {
        paintRounded(painter, area, cornerRadius, accentFill(KestroTheme::accentCool(), hovering(), pressing()));
        return;
    }
    const Look look = lookOf(kind_, isOn());
    const StateOpacity opacities = isOn() ? onFill_.value_or(look.opacity) : look.opacity;
    const double radius = kind_ == ButtonKind::plain ? plainRadius : cornerRadius;
    paintRounded(painter, area, radius, look.fill.faded(opacity(opacities)).color());
    if (kind_ != ButtonKind::plain) {
        kestroHairlineBorder(painter, area, radius, look.border.color());
    }
}

TextStyle Button::effectiveTextStyle() const {
    TextStyle style = textStyle_.value_or(text_styles::button);
    if (kind_ == ButtonKind::prominent) {
        style.ink = KestroTheme::ground;
    } else if (kind_ == ButtonKind::choice && !isOn()) {
        style.weight = text_styles::w500;
        style.ink = KestroTheme::textSecondary;
    } else if (kind_ == ButtonKind::chip && isOn()) {
        style.ink = KestroTheme::accentWarning;
    }
    if (textInk_) {
        style.ink = *textInk_;
    }
    style.ink = readable(style.ink);
    return style;
}

Ink Button::readable(const Ink& ink) const {
    if (kind_ != ButtonKind::chip || !isOn()) {
        return ink;
    }
    // On the strongest of the fills, so that hovering does not change the text.
    const Look look = lookOf(kind_, true);
    const StateOpacity fill = onFill_.value_or(look.opacity);
    return readableOn(over(look.fill.faded(fill.hover).color(), KestroTheme::ground()), ink.color());
}

Ink Button::symbolInk() const {
    if (symbolInk_) {
        return readable(*symbolInk_);
    }
    if (kind_ == ButtonKind::choice) {
        return isOn() ? Ink(KestroTheme::accentCool) : Ink(KestroTheme::textSecondary);
    }
    return effectiveTextStyle().ink;
}

ButtonParts Button::parts() const {
    ButtonParts parts;
    parts.symbol = symbol_.isEmpty() ? 0 : symbolSize_;
    parts.text = text_.isEmpty() ? 0 : std::ceil(textWidth(text_, effectiveTextStyle()));
    parts.trailingSymbol = trailingSymbol_.isEmpty() ? 0 : trailingSymbolSize_;
    parts.padding = square_ > 0 ? 0 : padding_;
    parts.gap = gap_;
    return parts;
}

}  // namespace kestro
