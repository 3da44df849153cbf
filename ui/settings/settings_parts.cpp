#include "ui/settings/settings_parts.h"

#include "ui/controls/composition.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"

#include <QPainter>

namespace kestro::settings_parts {

namespace {

constexpr int headingGap = 7;
constexpr int headingIndent = 2;
constexpr int columnGap = 16;
constexpr int blockPadding = 10;

void arrange(QWidget& parent, const std::vector<QWidget*>& rows, Qt::Orientation orientation) {
    const bool isColumn = orientation == Qt::Vertical;
    auto* layout = new QBoxLayout(isColumn ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, &parent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (QWidget* row : rows) {
        layout->addWidget(row, isColumn ? 0 : 1);
    }
}

void paintHairlinesBetween(QPainter& painter, const QWidget& parent, const std::vector<QWidget*>& rows,
                           Qt::Orientation orientation, int dividerInset) {
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (orientation == Qt::Vertical) {
            paintHairline(painter, rowInset, parent.width() - rowInset, rows[i]->y());
        } else {
            paintVerticalHairline(painter, rows[i]->x(), dividerInset, parent.height() - dividerInset);
        }
    }
}

}  // namespace

RowCard::RowCard(const std::vector<QWidget*>& rows, Qt::Orientation orientation)
    : rows_(rows), orientation_(orientation) {
    arrange(*this, rows, orientation);
}

void RowCard::paintEvent(QPaintEvent* event) {
    Card::paintEvent(event);
    QPainter painter(this);
    paintHairlinesBetween(painter, *this, rows_, orientation_, dividerInset_);
}

RowStack::RowStack(std::vector<QWidget*> rows) : rows_(std::move(rows)) {
    arrange(*this, rows_, Qt::Vertical);
}

void RowStack::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintHairlinesBetween(painter, *this, rows_, Qt::Vertical, 0);
}

QWidget* group(const Words& heading, QWidget* content) {
    return column(row(Insets{headingIndent, 0, 0, 0}, groupHeading(heading), spacer()), space(headingGap), content)
        .release();
}

QWidget* sideBySide(QWidget* left, QWidget* right) {
    auto* widget = new QWidget;
    auto* layout = new QHBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(columnGap);
    layout->addWidget(left, 1, Qt::AlignTop);
    layout->addWidget(right, 1, Qt::AlignTop);
    return widget;
}

QWidget* labelledRow(const Words& label, int labelWidth, QWidget* control, int height) {
    QWidget* widget = row(Insets{rowInset, 0, rowInset, 0},
                          text(label).style(text_styles::settingTitle).width(labelWidth), control)
                          .release();
    widget->setFixedHeight(height);
    return widget;
}

TextLabel* sliderValue() {
    TextStyle style = text_styles::settingTitle;
    style.weight = text_styles::w600;
    return text(QString()).style(style).value().release();
}

SliderBlock sliderBlock(const Words& label, const SliderRange& range, const Words& description) {
    SliderBlock block;
    block.value = sliderValue();
    block.slider = new Slider(range);
    block.slider->setAccessibleName(label);
    block.widget = column(Insets{rowInset, blockPadding, rowInset, blockPadding},
                          row(text(label).style(text_styles::settingTitle), spacer(), block.value), space(1),
                          block.slider, text(description).style(text_styles::settingDescription), spacer())
                       .release();
    return block;
}

}  // namespace kestro::settings_parts
