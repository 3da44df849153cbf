#pragma once

#include "ui/controls/badge.h"
#include "ui/controls/card.h"
#include "ui/controls/symbol_view.h"
#include "ui/controls/text_label.h"
#include "ui/controls/while_on_screen.h"
#include "ui/dashboard/dashboard_layout.h"
#include "ui/kestro_services.h"
#include "ui/widgets/metric_gauge.h"
#include "ui/widgets/ruled_index_row.h"

#include <array>
#include <functional>
#include <span>

namespace kestro {

/// One column of the dashboard: a card with a symbol, a title, a remark at the title's right, and the values of
/// one part of the machine. Does no work while hidden or in a minimised window, and refreshes when shown again.
class DashboardSection : public Card {
    Q_OBJECT

public:
    /// `tightTitle` replaces `title` in a tight section.
    DashboardSection(const QString& symbol, const QString& title, const QString& tightTitle, QWidget* parent);

    void setTier(SectionTier tier);

protected:
    /// Updates every value shown.
    virtual void refresh() = 0;

    /// Lays out the content after a change of size, tier, or number of parts.
    virtual void arrange(const SectionGrid& grid) = 0;

    /// Calls `show` after each assignment of `value` while the section is on screen.
    template <typename Value>
    void follow(const Value& value, std::function<void()> show) {
        onScreen_.follow(value, std::move(show));
    }

    SectionGrid grid() const;
    void arrangeAgain();

    /// Places a child in an area given in the grid's coordinates.
    void place(QWidget& child, const QRectF& area) const;

    /// Places a row at `top` and returns where the next one starts.
    double placeRow(RuledIndexRow& row, double top, const SectionGrid& grid) const;

    /// Places two gauges side by side in the hero; tight ones use the card's whole width.
    void placeGauges(const std::array<MetricGauge*, 2>& gauges, const SectionGrid& grid) const;

    /// Shows up to two contents, with both figures at the scale that fits the wider one.
    static void showGauges(const std::array<MetricGauge*, 2>& gauges, std::span<const GaugeContent> contents);

    void setSymbol(const QString& symbol);

    /// The remark at the right of the title: a text, omitted where it does not fit, or a badge. `meaning` is
    /// spoken before it. Without a `help`, that of a badge is its text where it is not shown.
    void setMeta(const QString& text, const QString& meaning = {});
    void setBadge(const QString& text, const Ink& ink, const QString& meaning, const QString& help = {});

    /// Paints the section's additional rules, in the grid's coordinates.
    virtual void paintRules(QPainter& painter, const SectionGrid& grid) const;

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrangeTitle(const SectionGrid& grid);
    void catchUp();

    QString fullTitle_;
    QString tightTitle_;
    SectionTier tier_ = SectionTier::full;
    SymbolView* symbol_;
    TextLabel* title_;
    TextLabel* meta_;
    Badge* badge_;
    WhileOnScreen onScreen_{*this, [this] { catchUp(); }};
};

}  // namespace kestro
