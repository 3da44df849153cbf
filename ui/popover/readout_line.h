#pragma once

#include "ui/controls/text_painter.h"
#include "ui/controls/view.h"

#include <limits>

namespace kestro {

/// One line of the popover: a symbol in its column, a label after it, and a value at the right end. A changed
/// value repaints only its own rectangle. Assistive technology reads "label, value".
class ReadoutLine : public View {
    Q_OBJECT

public:
    /// How the line is set. Without a symbol size the label starts at the line's left edge.
    struct Style {
        double symbolSize = 0;
        TextStyle label;
        TextStyle value;

        /// The widest the label may be, where something else stands between it and the value.
        double labelRoom = std::numeric_limits<double>::infinity();
    };

    explicit ReadoutLine(const Style& style, QWidget* parent = nullptr);

    void setSymbol(const QString& name, const Ink& ink);
    void setLabel(const QString& label);
    void setValue(const QString& value);
    void setValueInk(const Ink& ink);

    /// Moves symbol and label to the right end, for a line without a value.
    void setTrailing(bool isTrailing);

    /// What is spoken before the label, where a symbol alone tells what it is.
    void setSpokenPrefix(const QString& prefix) { spokenPrefix_ = prefix; }

    const QString& label() const { return label_; }
    const QString& value() const { return value_; }
    const QString& symbol() const { return symbol_; }
    const Ink& valueInk() const { return style_.value.ink; }

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double labelLeft() const;
    double labelWidth() const;
    QRectF valueRect() const;
    QRectF labelRect() const;
    QRectF symbolRect() const;

    /// The label with the room for its symbol, where they are at the right end.
    double trailingLeft() const;

    Style style_;
    QString symbol_;
    Ink symbolInk_;
    QString label_;
    QString value_;
    QString spokenPrefix_;
    bool isTrailing_ = false;
};

}  // namespace kestro
