#pragma once

#include "ui/controls/button.h"
#include "ui/controls/symbol_view.h"
#include "ui/controls/text_label.h"
#include "ui/controls/words.h"

#include <QBoxLayout>

#include <concepts>
#include <memory>
#include <utility>

namespace kestro {

/// Declarative composition: a view's source reads top to bottom like its picture.
///
///     row(Spacing(8), symbol("gauge.with.needle", 12, KestroTheme::accentCool),
///         text("KESTRO").style(text_styles::wordmarkPopover), spacer(),
///         chip(symbol("gearshape", 10)).help("Settings").onClick(onOpenSettings_));
///
/// A builder owns its widget until it is added to a row or column, or released. `into` stores a pointer to the
/// widget, for values that change later.

/// The distance between the elements of a row or column.
struct Spacing {
    explicit Spacing(int length) : points(length) {}
    int points;
};

/// The margins of a row or column.
struct Insets {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/// Space that stretches (`length` 0) or has a fixed length.
struct Space {
    int length = 0;
};
inline Space spacer() {
    return {};
}
inline Space space(int length) {
    return {length};
}

/// A widget under construction. `Derived` is the builder, so that calls chain.
template <typename W, typename Derived>
class Builder {
public:
    explicit Builder(std::unique_ptr<W> widget) : widget_(std::move(widget)) {}

    Derived&& into(W*& pointer) && {
        pointer = widget_.get();
        return done();
    }
    Derived&& help(const Words& help) && {
        widget_->setHelp(help);
        return done();
    }
    Derived&& width(int width) && {
        widget_->setFixedWidth(width);
        return done();
    }

    W* operator->() const { return widget_.get(); }

    /// Transfers ownership of the widget; the caller must give it a parent.
    [[nodiscard]] W* release() { return widget_.release(); }

protected:
    Derived&& done() { return static_cast<Derived&&>(*this); }
    W& widget() { return *widget_; }

private:
    std::unique_ptr<W> widget_;
};

class TextBuilder : public Builder<TextLabel, TextBuilder> {
public:
    using Builder::Builder;

    TextBuilder&& style(const TextStyle& style) &&;
    TextBuilder&& ink(const Ink& ink) &&;
    TextBuilder&& secondary() &&;
    TextBuilder&& align(Qt::Alignment alignment) &&;

    /// Never elided; `widest` reserves the maximum width of the value.
    TextBuilder&& value(const Words& widest = QString()) &&;
};

class SymbolBuilder : public Builder<SymbolView, SymbolBuilder> {
public:
    SymbolBuilder(const QString& symbol, double size, const Ink& ink);

    const QString& symbol() const { return symbol_; }
    double size() const { return size_; }

private:
    QString symbol_;
    double size_;
};

class ButtonBuilder : public Builder<Button, ButtonBuilder> {
public:
    using Builder::Builder;

    ButtonBuilder&& onClick(std::function<void()> action) &&;
    ButtonBuilder&& square(int edge) &&;
};

/// Wraps any widget, to place custom views and layouts in a row or column.
class WidgetBuilder {
public:
    explicit WidgetBuilder(std::unique_ptr<QWidget> widget) : widget_(std::move(widget)) {}
    [[nodiscard]] QWidget* release() { return widget_.release(); }
    QWidget* operator->() const { return widget_.get(); }

private:
    std::unique_ptr<QWidget> widget_;
};

TextBuilder text(const Words& text);
SymbolBuilder symbol(const Words& name, double size, const Ink& ink = KestroTheme::textSecondary);

/// Chips: a symbol alone (24 square), or a text with a symbol after it.
ButtonBuilder chip(const SymbolBuilder& symbol);
ButtonBuilder chip(const Words& text);
ButtonBuilder chip(const Words& text, const SymbolBuilder& trailing);

/// The heading of a group of settings, in capitals.
TextBuilder groupHeading(const Words& title);

namespace composition_detail {

void prepare(QBoxLayout& layout);
inline void add(QBoxLayout& layout, Spacing spacing) {
    layout.setSpacing(spacing.points);
}
inline void add(QBoxLayout& layout, const Insets& insets) {
    layout.setContentsMargins(insets.left, insets.top, insets.right, insets.bottom);
}
void add(QBoxLayout& layout, Space space);
void add(QBoxLayout& layout, QWidget* widget);
template <typename B>
requires requires(B& builder) {
    builder.release();
}
void add(QBoxLayout& layout, B&& builder) {
    add(layout, static_cast<QWidget*>(builder.release()));
}

}  // namespace composition_detail

/// Lays its elements out from left to right, centred vertically, without margins.
template <typename... Elements>
WidgetBuilder row(Elements&&... elements) {
    auto widget = std::make_unique<QWidget>();
    auto* layout = new QHBoxLayout(widget.get());
    composition_detail::prepare(*layout);
    (composition_detail::add(*layout, std::forward<Elements>(elements)), ...);
    return WidgetBuilder(std::move(widget));
}

/// Lays its elements out from top to bottom, without margins.
template <typename... Elements>
WidgetBuilder column(Elements&&... elements) {
    auto widget = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(widget.get());
    composition_detail::prepare(*layout);
    (composition_detail::add(*layout, std::forward<Elements>(elements)), ...);
    return WidgetBuilder(std::move(widget));
}

}  // namespace kestro
