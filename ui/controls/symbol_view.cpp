#include "ui/controls/symbol_view.h"

#include "ui/paint/zoom.h"

#include <QPainter>

#include <cmath>

namespace kestro {

SymbolView::SymbolView(const QString& name, double size, const Ink& ink, QWidget* parent)
    : View(parent), name_(name), size_(size), ink_(ink) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setSymbol(const QString& name) {
    if (name != name_) {
        name_ = name;
        update();
    }
}

void SymbolView::setInk(const Ink& ink) {
    if (ink != ink_) {
        ink_ = ink;
        update();
    }
}

void SymbolView::setWeight(SymbolWeight weight) {
    weight_ = weight;
    update();
}

QSize SymbolView::sizeHint() const {
    const int edge = static_cast<int>(std::ceil(size_));
    return {edge, edge};
}

AccessibleInfo SymbolView::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::Graphic;
    info.isDecoration = info.name.isEmpty();
    return info;
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled()) {
        painter.setOpacity(0.38);
    }
    paintInDesignPoints(painter, *this);
    const QSizeF room = designRect(*this).size();
    const QRectF box((room.width() - size_) / 2, (room.height() - size_) / 2, size_, size_);
    SymbolPainter::paint(painter, name_, box, ink_.color(), weight_);
}

}  // namespace kestro
