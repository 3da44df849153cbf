#pragma once

#include "ui/controls/view.h"
#include "ui/paint/ink.h"
#include "ui/theme/kestro_theme.h"

namespace kestro {

/// A load as the filled part of a rounded track, 4 high. Hidden from assistive technology, which reads the figure
/// beside it.
class LoadBar : public View {
    Q_OBJECT

public:
    static constexpr int fixedHeight = 4;

    explicit LoadBar(const Ink& tint = KestroTheme::accentCool, QWidget* parent = nullptr);

    /// 0..1, clamped. Repaints only when the filled length changes by a visible amount.
    void setFraction(double fraction);

    QSize sizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double fraction_ = 0;
    Ink tint_;
};

}  // namespace kestro
