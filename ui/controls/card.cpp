#include "ui/controls/card.h"

#include "ui/controls/ink.h"
#include "ui/controls/surface_paint.h"
#include "ui/theme/hairline.h"
#include "ui/theme/kestro_theme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace kestro {

namespace {

constexpr double kRadius = 6;
constexpr double kOpacity = 0.93;

}  // namespace

Card::Card(QWidget* parent) : QWidget(parent) {}

Card::Card(QWidget* content, QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
}

void Card::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintRounded(painter, rect(), kRadius, Ink(KestroTheme::surface).faded(kOpacity).color());
    kestroHairlineBorder(painter, rect(), kRadius);
}

}  // namespace kestro
