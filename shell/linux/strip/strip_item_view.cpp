#include "shell/linux/strip/strip_item_view.h"

#include "shell/linux/panel_look.h"
#include "shell/linux/strip/strip_layout.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/motion.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

constexpr double hoverOpacity = 0.08;

StatusContent widest(const StatusContent& content) {
    StatusContent wide = content;
    wide.title.text = content.widestTitle;
    return wide;
}

}  // namespace

StripItemView::StripItemView(ClickHandler onClick, QWidget* parent)
    : View(parent),
      onClick_(std::move(onClick)),
      hover_(0, [this] { update(); }),
      wantedWidth_(strip_layout::itemHeight) {
    setFocusPolicy(Qt::NoFocus);
}

bool StripItemView::setContent(const StatusContent& content) {
    const bool hasSameShape = content.widestTitle == content_.widestTitle && content.symbol == content_.symbol &&
                              content.title.text.isEmpty() == content_.title.text.isEmpty();
    content_ = content;
    setHelp(content.help);
    update();
    const int natural = strip_layout::itemWidth(content);
    const int limit = std::max(natural, strip_layout::itemWidth(widest(content)));
    const int width = hasSameShape ? std::clamp(wantedWidth_, natural, limit) : natural;
    return std::exchange(wantedWidth_, width) != width;
}

AccessibleInfo StripItemView::accessibleInfo() const {
    AccessibleInfo info;
    info.role = QAccessible::Button;
    info.name = content_.symbol ? content_.symbol->accessibilityDescription : content_.title.text.trimmed();
    info.description = content_.spoken();
    info.press = [this] { onClick_(StatusClick::primary, false); };
    return info;
}

void StripItemView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hover_.value() > 0) {
        paintRounded(painter, rect(), strip_layout::itemRadius, Ink::white(hoverOpacity * hover_.value()).color());
    }
    int left = strip_layout::itemPadding;
    if (content_.symbol) {
        const int size = content_.symbol->pointSize;
        const QRectF square(left, (height() - size) / 2.0, size, size);
        SymbolPainter::paint(painter, content_.symbol->name, square,
                             panelColor(StatusTitleColor::label, PanelScheme::dark));
        left += size + strip_layout::symbolGap;
    }
    drawText(painter, QRectF(left, 0, width() - strip_layout::itemPadding - left, height()),
             content_.title.text.trimmed(), strip_layout::titleStyle(content_.title));
}

void StripItemView::enterEvent(QEnterEvent*) {
    hover_.moveTo(1, motion::hover);
}

void StripItemView::leaveEvent(QEvent*) {
    hover_.moveTo(0, motion::hover);
}

void StripItemView::mousePressEvent(QMouseEvent* event) {
    pressed_ = event->button();
}

void StripItemView::mouseReleaseEvent(QMouseEvent* event) {
    const Qt::MouseButton pressed = std::exchange(pressed_, Qt::NoButton);
    if (event->button() != pressed || !rect().contains(event->position().toPoint())) {
        return;
    }
    if (pressed == Qt::LeftButton || pressed == Qt::RightButton) {
        onClick_(pressed == Qt::LeftButton ? StatusClick::primary : StatusClick::secondary,
                 event->modifiers().testFlag(Qt::ControlModifier));
    }
}

}  // namespace kestro
