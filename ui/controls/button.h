#pragma once

#include "ui/controls/control.h"
#include "ui/controls/text_style.h"

namespace kestro {

/// How a button looks. `chip`: the small fill with a hairline; on: in the warning accent (pinned, awake).
/// `plain`: nothing until hovered. `choice`: one of several; on: in the main accent. `prominent`: filled
/// with the accent, for the one action that a surface is about.
enum class ButtonKind { chip, plain, regular, prominent, choice };

/// Where the parts of a button stand. Absent parts are empty.
struct ButtonGeometry {
    QRectF symbol;
    QRectF text;
    QRectF trailingSymbol;
};

/// Sizes of the parts of a button in points; 0: absent.
struct ButtonParts {
    double symbol = 0;
    double text = 0;
    double trailingSymbol = 0;
    double padding = 0;
    double gap = 0;
};

/// Centres the parts in `size`, or, when `isSpread`, sets them at the left and the trailing symbol at the
/// right. A text that is too wide gets what the other parts leave.
ButtonGeometry buttonGeometry(const QSizeF& size, const ButtonParts& parts, bool isSpread);

/// A push button with a symbol, a text, or both, in one of five looks. Its accessible name is the one given,
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

    /// A fixed edge length for a button that shows only a symbol.
    void setSquare(int edge);
    void setHeight(int height);
    void setPadding(double padding);
    void setGap(double gap);
    void setTextStyle(const TextStyle& style);

    /// The colours of symbol and text, instead of those that follow from kind and state.
    void setInk(const Ink& symbol, const Ink& text);
    void setInk(const Ink& both) { setInk(both, both); }

    /// The colour of the trailing symbol, instead of the leading one's.
    void setTrailingInk(const Ink& ink);

    /// Parts at the left and the trailing symbol at the right, instead of all in the middle.
    void setSpread(bool isSpread);

    /// On: pinned, awake, chosen. A button that was ever set is announced as one that can be checked.
    void setOn(bool isOn);
    bool isOn() const { return on_.value_or(false); }

    /// The opacity of the fill while on, instead of the kind's.
    void setOnFill(const StateOpacity& fill);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paint(QPainter& painter) override;

private:
    void paintGround(QPainter& painter) const;
    TextStyle effectiveTextStyle() const;
    Ink symbolInk() const;
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
    std::optional<bool> on_;
    std::optional<TextStyle> textStyle_;
    std::optional<Ink> symbolInk_;
    std::optional<Ink> textInk_;
    std::optional<Ink> trailingInk_;
    std::optional<StateOpacity> onFill_;
};

}  // namespace kestro
