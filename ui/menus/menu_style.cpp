#include "ui/menus/menu_style.h"

#include "ui/controls/control.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/window_compositing.h"
#include "ui/theme/window_shape.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QStyleFactory>
#include <QStyleOptionMenuItem>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr int padding = 4;
constexpr int rowHeight = 24;
constexpr int separatorHeight = 9;
constexpr int checkX = 10;
constexpr int checkSize = 16;
constexpr int textX = 30;
constexpr int symbolSize = 12;
constexpr int symbolColumnWidth = 20;
constexpr int rightMargin = 10;
constexpr int titleMargin = 46;
constexpr int shortcutGap = 28;
constexpr double rowRadius = 5;
constexpr double separatorInset = 10;

const TextStyle titleStyle{12, rowHeight, QFont::Medium, 0, KestroTheme::textPrimary};
const TextStyle headerStyle{11, rowHeight, QFont::DemiBold, 0, KestroTheme::textSecondary};
const TextStyle shortcutStyle{11, rowHeight, QFont::Medium, 0, KestroTheme::textSecondary};

QPointer<MenuStyle> sharedStyle;

/// The data that the style needs for an entry, read from its action.
struct Row {
    QString title;
    QString shortcut;
    QString symbol;
    bool isHeader = false;
};

Row rowOf(const QWidget* widget, const QRect& area) {
    const auto* menu = qobject_cast<const QMenu*>(widget);
    const QAction* action = menu ? menu->actionAt(area.center()) : nullptr;
    if (!action) {
        return {};
    }
    Row row;
    row.title = action->data().toString();
    row.shortcut = action->property(MenuStyle::shortcutProperty).toString();
    row.symbol = action->property(MenuStyle::symbolProperty).toString();
    row.isHeader = action->property(MenuStyle::headerProperty).toBool();
    return row;
}

double symbolRoom(const QWidget* widget) {
    return widget && widget->property(MenuStyle::symbolProperty).toBool() ? symbolColumnWidth : 0;
}

void paintSubmenuArrow(QPainter& painter, const QRectF& row, const QColor& color) {
    const QPointF tip(row.right() - rightMargin, row.center().y());
    QPen pen(color, 1);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    painter.setPen(pen);
    painter.drawPolyline(QPolygonF{tip + QPointF(-3, -3.5), tip, tip + QPointF(-3, 3.5)});
}

void paintEntry(QPainter& painter, const QStyleOptionMenuItem& option, const QWidget* widget) {
    const Row row = rowOf(widget, option.rect);
    const QRectF area = option.rect;
    const bool isHovered = option.state & QStyle::State_Selected && option.state & QStyle::State_Enabled;
    const bool isDimmed = !(option.state & QStyle::State_Enabled) && !row.isHeader;
    if (isHovered) {
        paintRounded(painter, area, rowRadius, KestroTheme::accentCool());
    }
    if (isDimmed) {
        painter.setOpacity(disabledOpacity);
    }
    TextStyle title = row.isHeader ? headerStyle : titleStyle;
    TextStyle shortcut = shortcutStyle;
    Ink check = KestroTheme::accentCool;
    if (isHovered) {
        title.ink = KestroTheme::ground;
        title.weight = QFont::DemiBold;
        shortcut.ink = KestroTheme::ground;
        check = KestroTheme::ground;
    }
    // Columns are measured from the menu's edge, but a row starts after the padding.
    const double origin = area.left() - padding;
    if (option.checked) {
        constexpr double mark = 10;
        const QRectF box(origin + checkX + (checkSize - mark) / 2, area.center().y() - mark / 2, mark, mark);
        SymbolPainter::paint(painter, QStringLiteral("checkmark"), box, check.color());
    }
    if (!row.symbol.isEmpty()) {
        const QRectF box(origin + textX, area.center().y() - symbolSize / 2.0, symbolSize, symbolSize);
        SymbolPainter::paint(painter, row.symbol, box, title.ink.color());
    }
    QRectF text = area;
    text.setLeft(origin + textX + symbolRoom(widget));
    text.setRight(area.right() - rightMargin);
    drawText(painter, text, row.shortcut, shortcut, Qt::AlignRight, TextFit::value);
    drawText(painter, text, row.title, title);
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        paintSubmenuArrow(painter, area, isHovered ? KestroTheme::ground() : KestroTheme::textSecondary());
    }
}

}  // namespace

MenuStyle& MenuStyle::shared() {
    if (!sharedStyle) {
        sharedStyle = new MenuStyle;
        sharedStyle->setParent(qApp);
    }
    return *sharedStyle;
}

MenuStyle::MenuStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    if (element == CE_MenuEmptyArea) {
        return;
    }
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element != CE_MenuItem || !item) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (item->menuItemType == QStyleOptionMenuItem::Separator) {
        const QRectF row = item->rect;
        paintHairline(*painter, row.left() - padding + separatorInset, row.right() + padding - separatorInset,
                      std::floor(row.center().y()));
    } else {
        paintEntry(*painter, *item, widget);
    }
    painter->restore();
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    if (element == PE_PanelMenu) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        paintPopupGlass(*painter, option->rect, cornerRadius);
        painter->restore();
        return;
    }
    if (element != PE_FrameMenu) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || !item) {
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    }
    if (item->menuItemType == QStyleOptionMenuItem::Separator) {
        // A size without a width would count as hidden.
        return {1, separatorHeight};
    }
    QString title = item->text;
    title.replace(QStringLiteral("&&"), QStringLiteral("&"));
    return {rowWidth(title, {}, symbolRoom(widget) > 0) - 2 * padding, rowHeight};
}

int MenuStyle::rowWidth(const QString& title, const QString& shortcut, bool hasSymbols) {
    TextStyle widest = titleStyle;
    widest.weight = QFont::DemiBold;
    const double end = shortcut.isEmpty()
                           ? titleMargin
                           : shortcutGap + textWidth(shortcut, shortcutStyle) + rightMargin + padding;
    return static_cast<int>(
        std::ceil(textX + (hasSymbols ? symbolColumnWidth : 0) + textWidth(title, widest) + end));
}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_MenuPanelWidth:
            return 0;
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return padding;
        case PM_SubMenuOverlap:
            return -2;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returnData) const {
    switch (hint) {
        case SH_Menu_MouseTracking:
        case SH_Menu_SloppySubMenus:
            return 1;
        case SH_Menu_Scrollable:
            return 1;
        case SH_Menu_Mask:
            // Without compositing, the corners outside the glass would be black.
            if (auto* const mask = qstyleoption_cast<QStyleHintReturnMask*>(returnData);
                mask != nullptr && !window_compositing::isAvailable()) {
                mask->region = roundedRegion(option->rect, cornerRadius);
                return 1;
            }
            return 0;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

}  // namespace kestro
