#include "ui/controls/card.h"

#include "ui/paint/hairline.h"
#include "ui/paint/ink.h"
#include "ui/paint/tall_shapes.h"
#include "ui/paint/zoom.h"
#include "ui/theme/kestro_theme.h"

#include <QPaintEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

namespace kestro {

namespace {

constexpr double cornerRadius = 6;
constexpr double cardOpacity = 0.93;

}  // namespace

Card::Card(QWidget* parent) : QWidget(parent) {}

Card::Card(QWidget* content, QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
}

void Card::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QColor surface = Ink(KestroTheme::surface).faded(cardOpacity).color();
    const int rounded = static_cast<int>(std::ceil(cornerRadius * zoomOf(*this)));
    if (rect().adjusted(rounded, rounded, -rounded, -rounded).contains(event->rect())) {
        // Only a value inside has changed: no corner or edge needs repainting.
        for (const QRect& changed : event->region()) {
            fillInBands(painter, snappedToDevice(painter, changed), surface);
        }
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    fillTallRounded(painter, snappedToDevice(painter, designRect(*this)), cornerRadius, surface);
    kestroHairlineBorder(painter, designRect(*this), cornerRadius);
}

}  // namespace kestro
