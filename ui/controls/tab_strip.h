#pragma once

#include "ui/controls/choice_bar.h"

namespace kestro {

/// A tab: its label and its symbol.
struct Tab {
    QString label;
    QString symbol;
};

/// The areas of `count` equal tabs with gaps of 4 in a strip of `size`.
std::vector<QRectF> tabAreas(const QSizeF& size, int count);

/// Tabs side by side, each a symbol above its label.
class TabStrip : public ChoiceBar {
    Q_OBJECT

public:
    static constexpr int fixedHeight = 44;

    explicit TabStrip(std::vector<Tab> tabs, QWidget* parent = nullptr);

    /// Ignores an unknown index.
    void setChosen(int index) override;

    QSize sizeHint() const override;
    QRectF focusArea() const override;
    AccessibleInfo accessibleInfo() const override;
    std::vector<AccessibleInfo> accessibleParts() const override;

protected:
    void paint(QPainter& painter) override;
    std::vector<QRectF> areas() const override;

private:
    void paintTab(QPainter& painter, int index, const QRectF& area) const;

    std::vector<Tab> tabs_;
};

}  // namespace kestro
