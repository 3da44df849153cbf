#include "ui/dashboard/dashboard_section.h"

#include "ui/paint/hairline.h"
#include "ui/paint/zoom.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double symbolSize = 11;
constexpr double titleGap = 6;

/// With a smaller gap the title and the remark read as one text.
constexpr double metaGap = 12;

constexpr double gaugeMargin = 6;
constexpr double heroPerGrowth = 90;
constexpr double mostGrowth = 1.35;

const TextStyle meta{9, SectionGrid::titleHeight, QFont::Medium, 0, KestroTheme::textSecondary};

}  // namespace

DashboardSection::DashboardSection(const QString& symbol, const QString& title, const QString& tightTitle,
                                   QWidget* parent)
    : Card(parent),
      fullTitle_(title),
      tightTitle_(tightTitle),
      symbol_(new SymbolView(symbol, symbolSize, KestroTheme::textSecondary, this)),
      title_(new TextLabel(title, this)),
      meta_(new TextLabel(QString(), this)),
      badge_(new Badge(BadgeKind::section, QString(), KestroTheme::accentNominal, this)) {
    setAccessibleName(title);
    title_->setStyle(text_styles::sectionTitle);
    title_->setDecoration(true);
    meta_->setStyle(meta);
    meta_->setTextAlignment(Qt::AlignRight);
    meta_->setFit(TextFit::value);
    meta_->hide();
    badge_->hide();
}

void DashboardSection::setTier(SectionTier tier) {
    if (tier != tier_) {
        tier_ = tier;
        arrangeAgain();
        if (isVisible()) {
            refresh();
        }
    }
}

void DashboardSection::catchUp() {
    refresh();
    arrangeAgain();
}

SectionGrid DashboardSection::grid() const {
    return sectionGrid(tier_, designRect(*this).size());
}

void DashboardSection::arrangeAgain() {
    const SectionGrid now = grid();
    arrangeTitle(now);
    arrange(now);
    update();
}

void DashboardSection::place(QWidget& child, const QRectF& area) const {
    const double padding = grid().padding;
    child.setGeometry(wholePoints(zoomed(area.translated(padding, padding), zoomOf(*this))));
}

double DashboardSection::placeRow(RuledIndexRow& row, double top, const SectionGrid& grid) const {
    const double height = row.content().detail.isEmpty() ? grid.pitch : grid.detailPitch;
    row.setCompact(isCompact(grid.tier));
    row.setSpacing(grid.spacing);
    place(row, QRectF(0, top, grid.width, height));
    return top + height;
}

void DashboardSection::placeGauges(const std::array<MetricGauge*, 2>& gauges, const SectionGrid& grid) const {
    const double outside = grid.tier == SectionTier::tight ? grid.padding : 0;
    const double half = (grid.width + 2 * outside) / 2;
    const GaugeMetrics& metrics = gaugeMetrics(isCompact(grid.tier));
    const double widest = (half - gaugeMargin) / metrics.frame;
    const double growth = std::clamp(std::min(1 + grid.heroGrowth / heroPerGrowth, widest), 1.0, mostGrowth);
    const double height = metrics.height() * growth;
    const double top = SectionGrid::heroTop + (grid.heroHeight - height) / 2;
    for (size_t i = 0; i < gauges.size(); ++i) {
        gauges[i]->setCompact(isCompact(grid.tier));
        gauges[i]->setGrowth(growth);
        place(*gauges[i], QRectF(half * static_cast<double>(i) - outside, top, half, height));
    }
}

void DashboardSection::showGauges(const std::array<MetricGauge*, 2>& gauges,
                                  std::span<const GaugeContent> contents) {
    double scale = 1;
    for (size_t i = 0; i < contents.size(); ++i) {
        gauges[i]->setContent(contents[i]);
        scale = std::min(scale, gauges[i]->fittingTextScale());
    }
    for (MetricGauge* gauge : gauges) {
        gauge->setTextScale(scale);
    }
}

void DashboardSection::setSymbol(const QString& symbol) {
    symbol_->setSymbol(symbol);
}

void DashboardSection::setMeta(const QString& text, const QString& meaning) {
    if (text != meta_->text()) {
        meta_->setText(text);
        meta_->setSpokenText(meaning.isEmpty() ? text : meaning + QStringLiteral(", ") + text);
        arrangeTitle(grid());
    }
}

void DashboardSection::setBadge(const QString& text, const Ink& ink, const QString& meaning, const QString& help) {
    const bool isWidthChanged = text != badge_->text();
    badge_->setState(text, ink);
    badge_->setSpokenText(meaning + QStringLiteral(", ") + text);
    badge_->setHelp(help.isEmpty() && tier_ == SectionTier::tight ? text : help);
    if (isWidthChanged) {
        arrangeTitle(grid());
    }
}

void DashboardSection::paintRules(QPainter&, const SectionGrid&) const {}

void DashboardSection::paintEvent(QPaintEvent* event) {
    Card::paintEvent(event);
    const SectionGrid now = grid();
    QPainter painter(this);
    paintInDesignPoints(painter, *this);
    painter.translate(now.padding, now.padding);
    paintHairline(painter, 0, now.width, SectionGrid::titleRule);
    paintRules(painter, now);
}

void DashboardSection::resizeEvent(QResizeEvent* event) {
    Card::resizeEvent(event);
    arrangeAgain();
}

void DashboardSection::arrangeTitle(const SectionGrid& grid) {
    const bool isTight = grid.tier == SectionTier::tight;
    constexpr double height = SectionGrid::titleHeight;
    title_->setText(isTight && !tightTitle_.isEmpty() ? tightTitle_ : fullTitle_);
    place(*symbol_, QRectF(0, (height - symbolSize) / 2, symbolSize, symbolSize));
    const double titleLeft = symbolSize + titleGap;
    const double titleWidth = std::ceil(textWidth(title_->text(), title_->style()));
    const double room = grid.width - titleLeft - titleWidth - metaGap;
    double right = grid.width;

    const bool hasBadge = !badge_->text().isEmpty();
    if (hasBadge) {
        badge_->setKind(BadgeKind::section);
        const bool isWord = !isTight && badge_->sizeHint().width() <= room;
        badge_->setKind(isWord ? BadgeKind::section : BadgeKind::dot);
        const QSizeF size = badge_->sizeHint();
        right -= size.width();
        place(*badge_, QRectF(QPointF(right, (height - size.height()) / 2), size));
    }
    const double metaWidth = std::ceil(textWidth(meta_->text(), meta));
    const bool hasMeta = !hasBadge && !meta_->text().isEmpty() && metaWidth <= room;
    if (hasMeta) {
        right -= metaWidth;
        place(*meta_, QRectF(right, 0, metaWidth, height));
    }
    badge_->setVisible(hasBadge);
    meta_->setVisible(hasMeta);
    place(*title_, QRectF(titleLeft, 0, std::max(0.0, std::min(titleWidth, right - titleLeft)), height));
}

}  // namespace kestro
