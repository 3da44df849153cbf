#pragma once

#include "ui/controls/card.h"
#include "ui/controls/slider.h"
#include "ui/controls/text_label.h"
#include "ui/controls/words.h"

#include <vector>

/// The building blocks of the settings tabs.
namespace kestro::settings_parts {

inline constexpr int rowInset = 12;

/// A card of rows, stacked or side by side, with hairlines between them.
class RowCard : public Card {
    Q_OBJECT

public:
    explicit RowCard(const std::vector<QWidget*>& rows, Qt::Orientation orientation = Qt::Vertical);

    /// The distance of the hairlines between side-by-side rows from the card's edges.
    void setDividerInset(int inset) { dividerInset_ = inset; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<QWidget*> rows_;
    Qt::Orientation orientation_;
    int dividerInset_ = 10;
};

/// Stacked rows with hairlines, without the card.
class RowStack : public QWidget {
    Q_OBJECT

public:
    explicit RowStack(std::vector<QWidget*> rows);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<QWidget*> rows_;
};

/// A heading in capitals above its content.
QWidget* group(const Words& heading, QWidget* content);

/// Two widgets of equal width, 16 apart.
QWidget* sideBySide(QWidget* left, QWidget* right);

/// A row of `height` with a label in a column of `labelWidth` and a control beside it.
QWidget* labelledRow(const Words& label, int labelWidth, QWidget* control, int height);

/// A slider with its label and value above and its description below.
struct SliderBlock {
    QWidget* widget = nullptr;
    TextLabel* value = nullptr;
    Slider* slider = nullptr;
};
SliderBlock sliderBlock(const Words& label, const SliderRange& range, const Words& description);

/// The label for a slider's value.
TextLabel* sliderValue();

}  // namespace kestro::settings_parts
