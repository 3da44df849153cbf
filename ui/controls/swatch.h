#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// A colour choice: a disc of 26 with its label below; the chosen one has a ring of 36.
class Swatch : public Control {
    Q_OBJECT

public:
    static constexpr int fixedHeight = 58;

    Swatch(const QString& label, const QColor& color, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QRectF focusArea() const override;
    double focusRadius() const override;

protected:
    void paint(QPainter& painter) override;

private:
    QString label_;
    QColor color_;
};

}  // namespace kestro
