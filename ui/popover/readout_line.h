#pragma once

#include "ui/controls/view.h"
#include "ui/paint/text_painter.h"

#include <limits>

namespace kestro {

/// One line of the popover: a symbol in its column, a label after it, and a value at the right end. A changed
/// value repaints only its own rectangle. Assistive technology reads "label, value".
class ReadoutLine : public View {
    Q_OBJECT

public:
    /// The typography of the line. Without a symbol the label starts at the line's left edge.
    struct Style {
        double symbolSize = 0;
        TextStyle label;
        TextStyle value;

        /// The label's maximum width, where something else is between it and the value.
        double labelRoom = std::numeric_limits<double>::infinity();
    };

    explicit ReadoutLine(const Style& style, QWidget* parent = nullptr);

    void setSymbol(const QString& name, const Ink& ink);
    void setLabel(const QString& label);
    void setValue(const QString& value);
    void setValueInk(const Ink& ink);

    /// Dims a value that no sensor gave, or the label if it is the value, and says so in the help text.
    void setMeasured(bool isMeasured);
    bool isMeasured() const { return isMeasured_; }

    /// Moves symbol and label to the right end, for a line without a value.
    void setTrailing(bool isTrailing);

    /// Spoken before the label where only a symbol shows what the line means.
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

    /// The start of the label and its symbol when they are at the right end.
    double trailingLeft() const;

    Style style_;
    QString symbol_;
    Ink symbolInk_;
    QString label_;
    QString value_;
    QString spokenPrefix_;
    bool isTrailing_ = false;
    bool isMeasured_ = true;
};

}  // namespace kestro
