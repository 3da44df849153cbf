#include "ui/dashboard/dashboard_layout.h"

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double kFullWidth = 215;
constexpr double kCompactWidth = 175;
constexpr double kVerticalInset = 14;

constexpr double kFullHero = 112;
constexpr double kCompactHero = 92;
constexpr double kHeroGrowthShare = 0.4;
constexpr double kHeroGrowthLimit = 180;
constexpr double kRowsGap = 10;
constexpr int kRows = 7;
constexpr double kFullPitch = 28;
constexpr double kCompactPitch = 30;
constexpr double kRoomyPitch = 40;
constexpr double kRoomyRows = 230;
constexpr double kLowestPitch = 20;
constexpr double kRowsFoot = 6;
constexpr double kSpareReserve = 20;
constexpr double kDenseRows = 196;

constexpr double kListTop = 40;
constexpr double kListTopAlone = 44;
constexpr double kListTopLimit = 52;
constexpr double kHeadAboveList = 15;
constexpr double kLowestProcessRow = 17;
constexpr double kFootFrom = 330;
constexpr double kFootReserve = 56;
constexpr double kFootRuleAbove = 44;
constexpr double kFootTextAbove = 39;

double paddingOf(SectionTier tier) {
    switch (tier) {
        case SectionTier::full:
            return 12;
        case SectionTier::compact:
            return 10;
        case SectionTier::tight:
            break;
    }
    return 8;
}

double detailPitchOf(SectionTier tier, double pitch, bool isDense) {
    if (isDense) {
        return std::max(30.0, pitch + 6);
    }
    return isCompact(tier) ? pitch + 8 : std::max(38.0, pitch + 6);
}

}  // namespace

SectionRowMetrics sectionRowMetrics(double width, int visibleSections) {
    const int count = std::max(visibleSections, 1);
    if (width >= count * kFullWidth) {
        return {18, 20, SectionTier::full};
    }
    if (width >= count * kCompactWidth) {
        return {12, 14, SectionTier::compact};
    }
    return {8, 10, SectionTier::tight};
}

std::vector<QRectF> sectionFrames(const QSizeF& size, int visibleSections) {
    std::vector<QRectF> frames;
    const SectionRowMetrics metrics = sectionRowMetrics(size.width(), visibleSections);
    const double gaps = metrics.spacing * (visibleSections - 1);
    const double width = (size.width() - 2 * metrics.inset - gaps) / std::max(visibleSections, 1);
    const double top = kDashboardHeaderHeight + kVerticalInset;
    const double height = size.height() - top - kDashboardFooterHeight - kVerticalInset;
    for (int i = 0; i < visibleSections; ++i) {
        frames.emplace_back(metrics.inset + i * (width + metrics.spacing), top, width, std::max(0.0, height));
    }
    return frames;
}

SectionGrid sectionGrid(SectionTier tier, const QSizeF& card) {
    SectionGrid grid;
    grid.tier = tier;
    grid.padding = paddingOf(tier);
    grid.width = std::max(0.0, card.width() - 2 * grid.padding);
    grid.height = std::max(0.0, card.height() - 2 * grid.padding);

    const double hero = isCompact(tier) ? kCompactHero : kFullHero;
    const double pitch = isCompact(tier) ? kCompactPitch : kFullPitch;
    const double rowsBeforeGrowth = SectionGrid::heroTop + hero + kRowsGap;
    grid.isDense = grid.height - rowsBeforeGrowth < kDenseRows;
    const double spare = std::max(0.0, grid.height - rowsBeforeGrowth - kRows * pitch - kSpareReserve);
    grid.heroHeight = hero + std::floor(std::min(kHeroGrowthShare * spare, kHeroGrowthLimit));
    grid.rowsTop = SectionGrid::heroTop + grid.heroHeight + kRowsGap;

    const double rows = grid.height - grid.rowsTop;
    const double highest = rows > kRoomyRows ? kRoomyPitch : pitch;
    grid.pitch = std::clamp(std::floor((rows - kRowsFoot) / kRows), kLowestPitch, highest);
    grid.detailPitch = detailPitchOf(tier, grid.pitch, grid.isDense);
    return grid;
}

ProcessListLayout processListLayout(const SectionGrid& grid, int limit, bool sortsByMemory) {
    ProcessListLayout layout;
    layout.hasFoot = grid.height > kFootFrom;
    layout.footRule = grid.height - kFootRuleAbove;
    layout.footTop = grid.height - kFootTextAbove;

    // Aligned with the rows of the other sections if one of them is near enough to the title.
    layout.firstRow = grid.rowsTop - std::floor((grid.rowsTop - kListTop) / grid.pitch) * grid.pitch;
    if (layout.firstRow > kListTopLimit) {
        layout.firstRow = kListTopAlone;
    }
    layout.headTop = layout.firstRow - kHeadAboveList;
    const double free = grid.height - layout.firstRow - (layout.hasFoot ? kFootReserve : 0);
    const int wanted = std::max(limit, 1);
    layout.rowHeight = std::max(kLowestProcessRow, std::min(grid.pitch, free / wanted));
    layout.rows = std::clamp(static_cast<int>((free + 0.001) / layout.rowHeight), 0, wanted);

    const bool isTight = grid.tier == SectionTier::tight;
    const double cpu = isCompact(grid.tier) ? 40 : 44;
    const double memory = isCompact(grid.tier) ? 46 : 50;
    layout.cpuWidth = isTight && sortsByMemory ? 0 : cpu;
    layout.memoryWidth = isTight && !sortsByMemory ? 0 : memory;
    return layout;
}

}  // namespace kestro
