#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// A tab: its label and its symbol.
struct Tab {
    QString label;
    QString symbol;
};

/// The areas of `count` equal tabs with gaps of 4 in a strip of `size`.
std::vector<QRectF> tabAreas(const QSizeF& size, int count);

/// Tabs side by side, a symbol over a label each. One stop of the Tab key; the arrows, Home and End choose.
class TabStrip : public Control {
    Q_OBJECT

public:
    static constexpr int kHeight = 44;

    explicit TabStrip(std::vector<Tab> tabs, QWidget* parent = nullptr);

    /// Shows a tab as chosen without telling anybody; an unknown index changes nothing. Silent when equal.
    void setChosen(int index);
    int chosen() const { return chosen_; }

    /// Called with the index after the user has chosen another tab.
    void onChosen(std::function<void(int)> action) { onChosen_ = std::move(action); }

    QSize sizeHint() const override;
    QRectF focusArea() const override;
    AccessibleInfo accessibleInfo() const override;
    std::vector<AccessibleInfo> accessibleParts() const override;

protected:
    void paint(QPainter& painter) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(int index);
    int indexAt(const QPointF& position) const;
    void paintTab(QPainter& painter, int index, const QRectF& area) const;

    std::vector<Tab> tabs_;
    int chosen_ = 0;
    int hovered_ = -1;
    std::function<void(int)> onChosen_;
};

}  // namespace kestro
