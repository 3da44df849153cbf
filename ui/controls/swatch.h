#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// A colour choice: a disc of 26 with its label below; the chosen one has a ring of 36.
class Swatch : public Control {
    Q_OBJECT

public:
    static constexpr int fixedHeight = 58;

    Swatch(const QString& label, const QColor& color, QWidget* parent = nullptr);

    /// No-op when unchanged.
    void setChosen(bool isChosen);
    bool isChosen() const { return isChosen_; }

    QSize sizeHint() const override;
    QRectF focusArea() const override;
    double focusRadius() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paint(QPainter& painter) override;

private:
    QString label_;
    QColor color_;
    bool isChosen_ = false;
};

}  // namespace kestro
