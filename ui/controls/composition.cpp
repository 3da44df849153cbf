#include "ui/controls/composition.h"

#include "ui/theme/hairline.h"

#include <QPainter>

namespace kestro {

namespace {

/// A line across the middle of one point.
class Rule : public View {
public:
    Rule() {
        setFixedHeight(1);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    AccessibleInfo accessibleInfo() const override {
        AccessibleInfo info;
        info.role = QAccessible::Separator;
        info.isDecoration = true;
        return info;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintHairline(painter, 0, width(), 0);
    }
};

}  // namespace

template <typename Change>
TextBuilder&& TextBuilder::restyled(Change change) {
    TextStyle style = widget().style();
    change(style);
    widget().setStyle(style);
    return done();
}

TextBuilder&& TextBuilder::style(const TextStyle& style) && {
    widget().setStyle(style);
    return done();
}

TextBuilder&& TextBuilder::size(double size) && {
    return restyled([size](TextStyle& style) { style.size = size; });
}

TextBuilder&& TextBuilder::line(double height) && {
    return restyled([height](TextStyle& style) { style.lineHeight = height; });
}

TextBuilder&& TextBuilder::weight(QFont::Weight weight) && {
    return restyled([weight](TextStyle& style) { style.weight = weight; });
}

TextBuilder&& TextBuilder::bold() && {
    return std::move(*this).weight(QFont::Bold);
}

TextBuilder&& TextBuilder::black() && {
    return std::move(*this).weight(QFont::Black);
}

TextBuilder&& TextBuilder::tracking(double tracking) && {
    return restyled([tracking](TextStyle& style) { style.tracking = tracking; });
}

TextBuilder&& TextBuilder::ink(const Ink& ink) && {
    widget().setInk(ink);
    return done();
}

TextBuilder&& TextBuilder::secondary() && {
    return std::move(*this).ink(KestroTheme::textSecondary);
}

TextBuilder&& TextBuilder::align(Qt::Alignment alignment) && {
    widget().setTextAlignment(alignment);
    return done();
}

TextBuilder&& TextBuilder::value(const Words& widest) && {
    widget().setFit(TextFit::value);
    widget().setTextAlignment(Qt::AlignRight);
    widget().reserveWidth(widest);
    return done();
}

SymbolBuilder::SymbolBuilder(const QString& symbol, double size, const Ink& ink)
    : Builder(std::make_unique<SymbolView>(symbol, size, ink)), symbol_(symbol), size_(size) {}

ButtonBuilder&& ButtonBuilder::onClick(std::function<void()> action) && {
    widget().onClick(std::move(action));
    return done();
}

ButtonBuilder&& ButtonBuilder::square(int edge) && {
    widget().setSquare(edge);
    return done();
}

ButtonBuilder&& ButtonBuilder::on(bool isOn) && {
    widget().setOn(isOn);
    return done();
}

ButtonBuilder&& ButtonBuilder::style(const TextStyle& style) && {
    widget().setTextStyle(style);
    return done();
}

TextBuilder text(const Words& text) {
    return TextBuilder(std::make_unique<TextLabel>(text));
}

SymbolBuilder symbol(const Words& name, double size, const Ink& ink) {
    return {name, size, ink};
}

ButtonBuilder chip(const SymbolBuilder& symbol) {
    auto widget = std::make_unique<Button>(ButtonKind::chip);
    widget->setSymbol(symbol.symbol(), symbol.size());
    widget->setSquare(24);
    return ButtonBuilder(std::move(widget));
}

ButtonBuilder chip(const Words& text) {
    auto widget = std::make_unique<Button>(ButtonKind::chip);
    TextStyle style = text_styles::button;
    style.size = 10;
    widget->setTextStyle(style);
    widget->setText(text);
    return ButtonBuilder(std::move(widget));
}

ButtonBuilder chip(const Words& text, const SymbolBuilder& trailing) {
    ButtonBuilder builder = chip(text);
    builder->setTrailingSymbol(trailing.symbol(), trailing.size());
    return builder;
}

ButtonBuilder button(const Words& text) {
    auto widget = std::make_unique<Button>(ButtonKind::regular);
    widget->setText(text);
    return ButtonBuilder(std::move(widget));
}

ButtonBuilder prominentButton(const Words& text) {
    auto widget = std::make_unique<Button>(ButtonKind::prominent);
    widget->setText(text);
    return ButtonBuilder(std::move(widget));
}

WidgetBuilder rule() {
    return WidgetBuilder(std::make_unique<Rule>());
}

TextBuilder groupHeading(const Words& title) {
    return text(title).style(text_styles::groupHeading);
}

namespace composition_detail {

void prepare(QBoxLayout& layout) {
    layout.setContentsMargins(0, 0, 0, 0);
    layout.setSpacing(0);
}

void add(QBoxLayout& layout, Space space) {
    if (space.length > 0) {
        layout.addSpacing(space.length);
    } else {
        layout.addStretch(1);
    }
}

void add(QBoxLayout& layout, QWidget* widget) {
    const bool isRow = layout.direction() == QBoxLayout::LeftToRight;
    layout.addWidget(widget, 0, isRow ? Qt::AlignVCenter : Qt::Alignment());
}

}  // namespace composition_detail

}  // namespace kestro
