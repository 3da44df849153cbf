#pragma once

#include "ui/controls/ink.h"
#include "ui/controls/view.h"
#include "ui/symbols/symbol_painter.h"

namespace kestro {

/// One symbol of the set, tinted. It says nothing to assistive technology unless it was given a name, for the
/// text beside it says more.
class SymbolView : public View {
    Q_OBJECT

public:
    SymbolView(const QString& name, double size, const Ink& ink, QWidget* parent = nullptr);

    /// Silent when equal.
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
