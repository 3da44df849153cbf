#include "ui/controls/tab_strip.h"

#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"

#include <QPainter>

#include <algorithm>

namespace kestro {

namespace {

constexpr double tabGap = 4;
constexpr double cornerRadius = 6;
constexpr double symbolSize = 15;
constexpr double symbolTop = 7;
constexpr double labelTop = 25;
constexpr double chosenOpacity = 0.06;
constexpr double hoverOpacity = 0.04;

}  // namespace

std::vector<QRectF> tabAreas(const QSizeF& size, int count) {
    std::vector<QRectF> areas;
    const double width = (size.width() - tabGap * (count - 1)) / std::max(1, count);
    for (int i = 0; i < count; ++i) {
        areas.emplace_back(i * (width + tabGap), 0, width, size.height());
    }
    return areas;
}

TabStrip::TabStrip(std::vector<Tab> tabs, QWidget* parent)
    : ChoiceBar(0, Trigger::press, parent), tabs_(std::move(tabs)) {}

void TabStrip::setChosen(int index) {
    if (index == chosen() || index < 0 || index >= static_cast<int>(tabs_.size())) {
        return;
    }
    take(index);
}

QSize TabStrip::sizeHint() const {
    return {100 * static_cast<int>(tabs_.size()), fixedHeight};
}

QRectF TabStrip::focusArea() const {
    const auto areas = this->areas();
    return areas.empty() ? QRectF(rect()) : areas[static_cast<size_t>(chosen())];
}

AccessibleInfo TabStrip::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::PageTabList;
    info.value = tabs_.empty() ? QString() : tabs_[static_cast<size_t>(chosen())].label;
    return info;
}

std::vector<AccessibleInfo> TabStrip::accessibleParts() const {
    std::vector<AccessibleInfo> parts;
    const auto areas = this->areas();
    for (size_t i = 0; i < tabs_.size(); ++i) {
        AccessibleInfo part;
        part.role = QAccessible::PageTab;
        part.name = tabs_[i].label;
        part.selected = static_cast<int>(i) == chosen();
        part.area = areas[i].toAlignedRect();
        part.press = [self = const_cast<TabStrip*>(this), i] { self->choose(static_cast<int>(i)); };
        parts.push_back(std::move(part));
    }
    return parts;
}

void TabStrip::paint(QPainter& painter) {
    const auto areas = this->areas();
    for (int i = 0; i < static_cast<int>(areas.size()); ++i) {
        paintTab(painter, i, areas[static_cast<size_t>(i)]);
    }
}

void TabStrip::paintTab(QPainter& painter, int index, const QRectF& area) const {
    const Tab& tab = tabs_[static_cast<size_t>(index)];
    const bool isChosen = index == chosen();
    const bool isHovered = index == hovered() && !isChosen;
    TextStyle style = text_styles::tabLabel;
    QColor symbol = KestroTheme::textSecondary();
    if (isChosen) {
        paintRounded(painter, area, cornerRadius, Ink::white(chosenOpacity).color());
        kestroHairlineBorder(painter, area, cornerRadius);
        style.weight = text_styles::w600;
        style.ink = KestroTheme::textPrimary;
        symbol = KestroTheme::accentCool();
    } else if (isHovered) {
        paintRounded(painter, area, cornerRadius, Ink::white(hoverOpacity * hovering()).color());
    }
    const QRectF box(area.center().x() - symbolSize / 2, symbolTop, symbolSize, symbolSize);
    SymbolPainter::paint(painter, tab.symbol, box, symbol);
    drawText(painter, QRectF(area.left() + 2, labelTop, area.width() - 4, style.lineHeight), tab.label, style,
             Qt::AlignHCenter);
}

std::vector<QRectF> TabStrip::areas() const {
    return tabAreas(size(), static_cast<int>(tabs_.size()));
}

}  // namespace kestro
