#include "ui/controls/tab_strip.h"

#include "ui/controls/surface_paint.h"
#include "ui/controls/text_painter.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/hairline.h"

#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace kestro {

namespace {

constexpr double kGap = 4;
constexpr double kRadius = 6;
constexpr double kSymbol = 15;
constexpr double kSymbolTop = 7;
constexpr double kLabelTop = 25;
constexpr double kChosenOpacity = 0.06;
constexpr double kHoverOpacity = 0.04;

}  // namespace

std::vector<QRectF> tabAreas(const QSizeF& size, int count) {
    std::vector<QRectF> areas;
    const double width = (size.width() - kGap * (count - 1)) / std::max(1, count);
    for (int i = 0; i < count; ++i) {
        areas.emplace_back(i * (width + kGap), 0, width, size.height());
    }
    return areas;
}

TabStrip::TabStrip(std::vector<Tab> tabs, QWidget* parent) : Control(parent), tabs_(std::move(tabs)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TabStrip::setChosen(int index) {
    if (index == chosen_ || index < 0 || index >= static_cast<int>(tabs_.size())) {
        return;
    }
    chosen_ = index;
    announceValue();
    moveFocusRing();
    update();
}

QSize TabStrip::sizeHint() const {
    return {100 * static_cast<int>(tabs_.size()), kHeight};
}

QRectF TabStrip::focusArea() const {
    const auto areas = tabAreas(size(), static_cast<int>(tabs_.size()));
    return areas.empty() ? QRectF(rect()) : areas[static_cast<size_t>(chosen_)];
}

AccessibleInfo TabStrip::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::PageTabList;
    info.value = tabs_.empty() ? QString() : tabs_[static_cast<size_t>(chosen_)].label;
    return info;
}

std::vector<AccessibleInfo> TabStrip::accessibleParts() const {
    std::vector<AccessibleInfo> parts;
    const auto areas = tabAreas(size(), static_cast<int>(tabs_.size()));
    for (size_t i = 0; i < tabs_.size(); ++i) {
        AccessibleInfo part;
        part.role = QAccessible::PageTab;
        part.name = tabs_[i].label;
        part.selected = static_cast<int>(i) == chosen_;
        part.area = areas[i].toAlignedRect();
        part.press = [self = const_cast<TabStrip*>(this), i] { self->choose(static_cast<int>(i)); };
        parts.push_back(std::move(part));
    }
    return parts;
}

void TabStrip::paint(QPainter& painter) {
    const auto areas = tabAreas(size(), static_cast<int>(tabs_.size()));
    for (int i = 0; i < static_cast<int>(areas.size()); ++i) {
        paintTab(painter, i, areas[static_cast<size_t>(i)]);
    }
}

void TabStrip::paintTab(QPainter& painter, int index, const QRectF& area) const {
    const Tab& tab = tabs_[static_cast<size_t>(index)];
    const bool isChosen = index == chosen_;
    const bool isHovered = index == hovered_ && !isChosen;
    TextStyle style = text_styles::tabLabel;
    QColor symbol = KestroTheme::textSecondary();
    if (isChosen) {
        paintRounded(painter, area, kRadius, Ink::white(kChosenOpacity).color());
        kestroHairlineBorder(painter, area, kRadius);
        style.weight = text_styles::w600;
        style.ink = KestroTheme::textPrimary;
        symbol = KestroTheme::accentCool();
    } else if (isHovered) {
        paintRounded(painter, area, kRadius, Ink::white(kHoverOpacity * hovering()).color());
    }
    const QRectF box(area.center().x() - kSymbol / 2, kSymbolTop, kSymbol, kSymbol);
    SymbolPainter::paint(painter, tab.symbol, box, symbol);
    drawText(painter, QRectF(area.left() + 2, kLabelTop, area.width() - 4, style.lineHeight), tab.label, style,
             Qt::AlignHCenter);
}

bool TabStrip::event(QEvent* event) {
    if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter) {
        const int index = indexAt(static_cast<QHoverEvent*>(event)->position());
        if (index != hovered_) {
            hovered_ = index;
            update();
        }
    }
    return Control::event(event);
}

void TabStrip::mousePressEvent(QMouseEvent* event) {
    Control::mousePressEvent(event);
    if (event->button() == Qt::LeftButton) {
        choose(indexAt(event->position()));
    }
}

void TabStrip::keyPressEvent(QKeyEvent* event) {
    const int last = static_cast<int>(tabs_.size()) - 1;
    switch (event->key()) {
        case Qt::Key_Left:
            choose(chosen_ - 1);
            break;
        case Qt::Key_Right:
            choose(chosen_ + 1);
            break;
        case Qt::Key_Home:
            choose(0);
            break;
        case Qt::Key_End:
            choose(last);
            break;
        default:
            event->ignore();
            return;
    }
    showFocus();
}

void TabStrip::choose(int index) {
    const int before = chosen_;
    setChosen(index);
    if (chosen_ != before && onChosen_) {
        onChosen_(chosen_);
    }
}

int TabStrip::indexAt(const QPointF& position) const {
    const auto areas = tabAreas(size(), static_cast<int>(tabs_.size()));
    const auto found = std::ranges::find_if(areas, [&](const QRectF& area) { return area.contains(position); });
    return found == areas.end() ? -1 : static_cast<int>(found - areas.begin());
}

}  // namespace kestro
