#pragma once

#include "ui/controls/view.h"
#include "ui/paint/ink.h"
#include "ui/symbols/symbol_painter.h"

namespace kestro {

/// One tinted symbol of the set. Hidden from assistive technology unless it has a name, because adjacent text
/// usually describes it.
class SymbolView : public View {
    Q_OBJECT

public:
    SymbolView(const QString& name, double size, const Ink& ink, QWidget* parent = nullptr);

    /// No-op when unchanged.
    void setSymbol(const QString& name);
    void setInk(const Ink& ink);
    void setWeight(SymbolWeight weight);
    const QString& symbol() const { return name_; }

    QSize sizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString name_;
    double size_;
    Ink ink_;
    SymbolWeight weight_ = SymbolWeight::regular;
};

}  // namespace kestro
