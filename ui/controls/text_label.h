#pragma once

#include "ui/controls/view.h"
#include "ui/paint/text_painter.h"

namespace kestro {

/// One line of plain text, without markup or mnemonics. Its height is the style's line height.
class TextLabel : public View {
    Q_OBJECT

public:
    explicit TextLabel(const QString& text = {}, QWidget* parent = nullptr);

    /// No-op when unchanged. Otherwise repaints only this label and, unless the width is reserved, updates the
    /// layout.
    void setText(const QString& text);
    const QString& text() const { return text_; }

    /// Replaces the text as the accessible name; empty: the text itself. Unlike QWidget::setAccessibleName it
    /// announces nothing, since figures change all the time.
    void setSpokenText(const QString& text) { spokenText_ = text; }

    void setStyle(const TextStyle& style);
    const TextStyle& style() const { return style_; }
    void setInk(const Ink& ink);
    void setTextAlignment(Qt::Alignment alignment);

    /// `value`: the text shrinks but is never elided.
    void setFit(TextFit fit);

    /// Fixes the label's width to that of `widest`, so that changing figures move nothing.
    void reserveWidth(const QString& widest);

    /// Hides the label from assistive technology where the value beside it already includes the label.
    void setDecoration(bool isDecoration) { isDecoration_ = isDecoration; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF textArea() const;

    QString text_;
    QString spokenText_;
    QString reserved_;
    TextStyle style_;
    Qt::Alignment alignment_ = Qt::AlignLeft;
    TextFit fit_ = TextFit::label;
    bool isDecoration_ = false;
};

}  // namespace kestro
