#include "ui/controls/composition.h"

namespace kestro {

TextBuilder&& TextBuilder::style(const TextStyle& style) && {
    widget().setStyle(style);
    return done();
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
