#include "ui/dashboard/dashboard_layout.h"

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double fullWidth = 215;
constexpr double compactWidth = 175;
constexpr double verticalInset = 14;

constexpr double fullHero = 112;
constexpr double compactHero = 92;
constexpr double heroGrowthShare = 0.4;
constexpr double rowsGap = 10;
constexpr int rowCount = 7;
constexpr double fullPitch = 28;
constexpr double compactPitch = 30;
constexpr double roomyPitch = 40;
constexpr double roomyRows = 230;
constexpr double lowestPitch = 20;
constexpr double rowsFoot = 6;
constexpr double spareReserve = 20;
constexpr double denseRows = 196;

/// The height of a card in a window of the ideal height, and that inside the padding of a full one.
constexpr double usualCard = 382;
constexpr double usualInside = 358;
constexpr double modestGrowth = 40;
constexpr double ampleSpare = 180;
constexpr double ampleGrowth = 80;
constexpr double namedScales = 40;

/// What the header and the footer need.
constexpr double narrowestZoomed = 580;
constexpr double lowestZoomed = 560;
constexpr double highestZoomed = 680;
constexpr double highestZoom = 5;
constexpr double twoRows = 880;

constexpr double listTop = 40;
constexpr double listTopAlone = 44;
constexpr double listTopLimit = 52;
constexpr double headAboveList = 15;
constexpr double lowestProcessRow = 17;
constexpr double footFrom = 330;
constexpr double footReserve = 56;
constexpr double footRuleAbove = 44;
constexpr double footTextAbove = 39;

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

double detailPitchOf(SectionTier tier, double pitch, RowSpacing spacing) {
    if (spacing == RowSpacing::dense) {
        return std::max(30.0, pitch + 6);
    }
    return isCompact(tier) ? pitch + 8 : std::max(38.0, pitch + 6);
}

/// The grid of a card that is at most as high as usual.
SectionGrid usualGrid(SectionTier tier, const QSizeF& card) {
    SectionGrid grid;
    grid.tier = tier;
    grid.padding = paddingOf(tier);
    grid.width = std::max(0.0, card.width() - 2 * grid.padding);
    grid.height = std::max(0.0, card.height() - 2 * grid.padding);

    const double hero = isCompact(tier) ? compactHero : fullHero;
    const double pitch = isCompact(tier) ? compactPitch : fullPitch;
    const double rowsBeforeGrowth = SectionGrid::heroTop + hero + rowsGap;
    grid.spacing = grid.height - rowsBeforeGrowth < denseRows ? RowSpacing::dense : RowSpacing::regular;
    const double spare = std::max(0.0, grid.height - rowsBeforeGrowth - rowCount * pitch - spareReserve);
    grid.heroHeight = hero + std::floor(heroGrowthShare * spare);
    grid.rowsTop = SectionGrid::heroTop + grid.heroHeight + rowsGap;

    const double rows = grid.height - grid.rowsTop;
    const double highest = rows > roomyRows ? roomyPitch : pitch;
    grid.pitch = std::clamp(std::floor((rows - rowsFoot) / rowCount), lowestPitch, highest);
    grid.detailPitch = detailPitchOf(tier, grid.pitch, grid.spacing);
    return grid;
}

/// Divides `spare` points of height between the hero and the rows.
void growInto(SectionGrid& grid, double spare) {
    const double modest = std::min(0.22 * spare, modestGrowth);
    const double ample = modestGrowth + std::min((spare - ampleSpare) / 2, ampleGrowth);
    grid.heroGrowth = std::floor(spare > ampleSpare ? ample : modest);
    grid.heroHeight += grid.heroGrowth;
    grid.rowsTop += grid.heroGrowth;
    const double pitch = std::min(roomyPitch, fullPitch + std::floor(0.55 * spare / rowCount));
    grid.pitch = std::max(grid.pitch, pitch);
    grid.spacing = RowSpacing::roomy;
    grid.detailPitch = detailPitchOf(grid.tier, grid.pitch, grid.spacing);
    grid.namesScales = spare > namedScales;
}

}  // namespace

double dashboardZoom(const QSizeF& window, int visibleSections) {
    const auto zoomFor = [&](double rowWidth, double height) {
        const double eighths = std::floor(
            8 * std::min(window.width() / std::max(rowWidth, narrowestZoomed), window.height() / height));
        return std::clamp(eighths / 8, 1.0, highestZoom);
    };
    const double full = zoomFor(visibleSections * fullWidth, lowestZoomed);
    if (window.height() / full <= highestZoomed) {
        return full;
    }
    const double inOneRow = std::max(full, zoomFor(visibleSections * compactWidth, lowestZoomed));
    const int columns = sectionColumns(window / inOneRow, visibleSections);
    return columns < visibleSections ? zoomFor(columns * fullWidth, twoRows) : inOneRow;
}

int sectionColumns(const QSizeF& size, int visibleSections) {
    return std::max(size.height() >= twoRows ? (visibleSections + 1) / 2 : visibleSections, 1);
}

SectionRowMetrics sectionRowMetrics(double width, int columns) {
    const int count = std::max(columns, 1);
    if (width >= count * fullWidth) {
        return {18, 20, SectionTier::full};
    }
    if (width >= count * compactWidth) {
        return {12, 14, SectionTier::compact};
    }
    return {8, 10, SectionTier::tight};
}

std::vector<QRectF> sectionFrames(const QSizeF& size, int visibleSections) {
    std::vector<QRectF> frames;
    const int columns = sectionColumns(size, visibleSections);
    const SectionRowMetrics metrics = sectionRowMetrics(size.width(), columns);
    const int rows = columns < visibleSections ? 2 : 1;
    double top = dashboardHeaderHeight + verticalInset;
    const double room = size.height() - top - dashboardFooterHeight - verticalInset;
    const double height = std::max(0.0, (room - (rows - 1) * metrics.spacing) / rows);
    for (int first = 0; first < visibleSections; first += columns) {
        const int count = std::min(columns, visibleSections - first);
        const double width = (size.width() - 2 * metrics.inset - (count - 1) * metrics.spacing) / count;
        for (int i = 0; i < count; ++i) {
            frames.emplace_back(metrics.inset + i * (width + metrics.spacing), top, width, height);
        }
        top += height + metrics.spacing;
    }
    return frames;
}

SectionGrid sectionGrid(SectionTier tier, const QSizeF& card) {
    SectionGrid grid = usualGrid(tier, {card.width(), std::min(card.height(), usualCard)});
    if (card.height() > usualCard) {
        grid.height = card.height() - 2 * grid.padding;
        growInto(grid, grid.height - usualInside);
    }
    return grid;
}

ProcessListLayout processListLayout(const SectionGrid& grid, int limit, bool sortsByMemory) {
    ProcessListLayout layout;
    layout.hasFoot = grid.height > footFrom;
    layout.footRule = grid.height - footRuleAbove;
    layout.footTop = grid.height - footTextAbove;

    // Aligned with the rows of the other sections if one of them is near enough to the title.
    layout.firstRow = grid.rowsTop - std::floor((grid.rowsTop - listTop) / grid.pitch) * grid.pitch;
    if (layout.firstRow > listTopLimit) {
        layout.firstRow = listTopAlone;
    }
    layout.headTop = layout.firstRow - headAboveList;
    const double free = grid.height - layout.firstRow - (layout.hasFoot ? footReserve : 0);
    const int wanted = std::max(limit, 1);
    layout.rowHeight = std::max(lowestProcessRow, std::min(grid.pitch, free / wanted));
    layout.rows = std::clamp(static_cast<int>((free + 0.001) / layout.rowHeight), 0, wanted);

    const bool isTight = grid.tier == SectionTier::tight;
    const double cpu = isCompact(grid.tier) ? 40 : 44;
    const double memory = isCompact(grid.tier) ? 46 : 50;
    layout.cpuWidth = isTight && sortsByMemory ? 0 : cpu;
    layout.memoryWidth = isTight && !sortsByMemory ? 0 : memory;
    return layout;
}

}  // namespace kestro
