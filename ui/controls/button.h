#pragma once

#include "ui/controls/control.h"
#include "ui/paint/text_style.h"

#include <QMarginsF>

namespace kestro {

/// The look of a button. `chip`: a small fill with a hairline; when on, in the warning accent (pinned, awake).
/// `plain`: no background until hovered. `choice`: one of several; when on, in the main accent. `prominent`:
/// filled with the accent, for a surface's primary action.
enum class ButtonKind { chip, plain, regular, prominent, choice };

/// The areas of a button's parts. Absent parts are empty.
struct ButtonGeometry {
    QRectF symbol;
    QRectF text;
    QRectF trailingSymbol;
};

/// The widths of a button's parts, its padding and its gap, in points; 0: absent.
struct ButtonParts {
    double symbol = 0;
    double text = 0;
    double trailingSymbol = 0;
    double padding = 0;
    double gap = 0;
};

/// Centres the parts in `size`; if `isSpread`, aligns them left and the trailing symbol right. Text that is too
/// wide gets the space that the other parts leave.
ButtonGeometry buttonGeometry(const QSizeF& size, const ButtonParts& parts, bool isSpread);

/// A push button with a symbol, a text, or both, in one of five looks. Its accessible name is the explicit one,
/// else its text, else its help.
class Button : public Control {
    Q_OBJECT

public:
    explicit Button(ButtonKind kind, QWidget* parent = nullptr);

    void setSymbol(const QString& name, double size);
    void setTrailingSymbol(const QString& name, double size);
    void setText(const QString& text);
    const QString& text() const { return text_; }

    void setKind(ButtonKind kind);

    /// Sets a fixed edge length, for a button that shows only a symbol.
    void setSquare(int edge);
    void setHeight(int height);
    void setPadding(double padding);
    void setGap(double gap);
    void setTextStyle(const TextStyle& style);

    /// Overrides the colours of symbol and text that follow from kind and state.
    void setInk(const Ink& symbol, const Ink& text);
    void setInk(const Ink& both) { setInk(both, both); }

    /// Overrides the colour of the trailing symbol, which otherwise matches the leading one.
    void setTrailingInk(const Ink& ink);

    /// Aligns the parts left and the trailing symbol right instead of centring everything.
    void setSpread(bool isSpread);

    /// Overrides the kind's fill opacity while on.
    void setOnFill(const StateOpacity& fill);

    /// Draws the focus ring closer, where it would leave the window or cross a neighbour.
    void setFocusInset(const QMarginsF& inset) { focusInset_ = inset; }
    QRectF focusArea() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paint(QPainter& painter) override;
    void stateDidChange() override;

private:
    void paintGround(QPainter& painter) const;
    TextStyle effectiveTextStyle() const;
    Ink symbolInk() const;
    Ink readable(const Ink& ink) const;
    ButtonParts parts() const;

    ButtonKind kind_;
    QString symbol_;
    QString trailingSymbol_;
    QString text_;
    double symbolSize_ = 0;
    double trailingSymbolSize_ = 0;
    int height_;
    int square_ = 0;
    double padding_;
    double gap_;
    bool isSpread_ = false;
    QMarginsF focusInset_;
    std::optional<TextStyle> textStyle_;
    std::optional<Ink> symbolInk_;
    std::optional<Ink> textInk_;
    std::optional<Ink> trailingInk_;
    std::optional<StateOpacity> onFill_;
};

}  // namespace kestro
