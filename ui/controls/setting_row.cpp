#include "ui/controls/setting_row.h"

#include "ui/controls/indicators.h"
#include "ui/paint/text_painter.h"
#include "ui/symbols/symbol_painter.h"
#include "ui/theme/motion.h"

#include <QPainter>

#include <algorithm>

namespace kestro {

namespace {

constexpr double rowInset = 12;
constexpr double controlGap = 12;

/// Between a mark and a symbol side by side.
constexpr double narrowGap = 10;

bool leads(RowMark mark) {
    return mark == RowMark::check || mark == RowMark::radio;
}

bool choosesItself(RowMark mark) {
    return mark == RowMark::check || mark == RowMark::toggle;
}

QSizeF markSize(RowMark mark) {
    switch (mark) {
        case RowMark::check:
            return {checkSize, checkSize};
        case RowMark::radio:
            return {radioSize, radioSize};
        case RowMark::toggle:
            return {switchWidth, switchHeight};
        case RowMark::chosen:
            break;
    }
    return {chosenMarkSize, chosenMarkSize};
}

}  // namespace

SettingRowGeometry settingRowGeometry(const QSizeF& size, const SettingRowParts& parts) {
    SettingRowGeometry geometry;
    const auto centred = [&](double x, const QSizeF& part) {
        return QRectF(QPointF(x, (size.height() - part.height()) / 2), part);
    };
    const QSizeF mark = markSize(parts.mark);
    const bool hasBoth = leads(parts.mark) && parts.symbol > 0;
    double left = rowInset;
    double right = size.width() - rowInset;
    if (leads(parts.mark)) {
        geometry.mark = centred(left, mark);
        left += mark.width() + (hasBoth ? narrowGap : controlGap);
    } else {
        right -= mark.width();
        geometry.mark = centred(right, mark);
        right -= controlGap;
    }
    if (parts.symbol > 0) {
        geometry.symbol = centred(left, {parts.symbol, parts.symbol});
        left += parts.symbol + (hasBoth ? narrowGap : controlGap);
    }
    const double width = std::max(0.0, right - parts.trailingRoom - left);
    const double textHeight = parts.titleHeight + parts.descriptionHeight;
    const double top = (size.height() - textHeight) / 2;
    geometry.title = QRectF(left, top, width, parts.titleHeight);
    if (parts.descriptionHeight > 0) {
        geometry.description = QRectF(left, top + parts.titleHeight, width, parts.descriptionHeight);
    }
    return geometry;
}

SettingRow::SettingRow(RowMark mark, const QString& title, int height, QWidget* parent)
    : Control(parent), mark_(mark), title_(title), height_(height), knob_(0, [this] { update(); }) {
    setCheckable(choosesItself(mark) ? QAccessible::CheckBox : QAccessible::RadioButton);
    setAccessibleName(title);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SettingRow::setDescription(const QString& description) {
    if (description != description_) {
        description_ = description;
        setAccessibleDescription(description);
        update();
    }
}

void SettingRow::setSymbol(const QString& name, double size) {
    symbol_ = name;
    symbolSize_ = size;
    update();
}

void SettingRow::setTitleStyle(const TextStyle& style) {
    titleStyle_ = style;
    update();
}

void SettingRow::setTrailingRoom(double room) {
    trailingRoom_ = room;
    update();
}

QSize SettingRow::sizeHint() const {
    return {240, height_};
}

QSize SettingRow::minimumSizeHint() const {
    return {100, height_};
}

QRectF SettingRow::focusArea() const {
    return geometryNow().mark;
}

double SettingRow::focusRadius() const {
    return mark_ == RowMark::check ? 4 : geometryNow().mark.height() / 2;
}

AccessibleInfo SettingRow::accessibleInfo() const {
    AccessibleInfo info = Control::accessibleInfo();
    if (!description_.isEmpty() && !help().isEmpty()) {
        info.description = description_ + QStringLiteral(". ") + help();
    }
    return info;
}

void SettingRow::paint(QPainter& painter) {
    const SettingRowGeometry geometry = geometryNow();
    const IndicatorState state{knob_.value(), hovering(), pressing()};
    switch (mark_) {
        case RowMark::check:
            paintCheckMark(painter, geometry.mark, state);
            break;
        case RowMark::radio:
            paintRadioMark(painter, geometry.mark, state);
            break;
        case RowMark::toggle:
            paintSwitch(painter, geometry.mark, state);
            break;
        case RowMark::chosen:
            paintChosenMark(painter, geometry.mark, state);
            break;
    }
    if (!symbol_.isEmpty()) {
        // Next to an accent-coloured mark the symbol uses the text's colour.
        const QColor on = leads(mark_) ? KestroTheme::textPrimary() : KestroTheme::accentCool();
        SymbolPainter::paint(painter, symbol_, geometry.symbol, isOn() ? on : KestroTheme::textSecondary());
    }
    drawText(painter, geometry.title, title_, titleStyle());
    drawText(painter, geometry.description, description_, text_styles::settingDescription);
}

void SettingRow::activated() {
    if (choosesItself(mark_)) {
        setOn(!isOn());
    }
}

void SettingRow::stateDidChange() {
    knob_.moveTo(isOn() ? 1 : 0, mark_ == RowMark::toggle && isVisible() ? motion::slide : motion::none);
    update();
}

SettingRowGeometry SettingRow::geometryNow() const {
    SettingRowParts parts;
    parts.mark = mark_;
    parts.symbol = symbol_.isEmpty() ? 0 : symbolSize_;
    parts.titleHeight = titleStyle().lineHeight;
    parts.descriptionHeight = description_.isEmpty() ? 0 : text_styles::settingDescription.lineHeight;
    parts.trailingRoom = trailingRoom_;
    return settingRowGeometry(size(), parts);
}

TextStyle SettingRow::titleStyle() const {
    TextStyle style = titleStyle_.value_or(text_styles::settingTitle);
    if (isOn() && !choosesItself(mark_)) {
        style.weight = text_styles::w600;
    }
    return style;
}

}  // namespace kestro
