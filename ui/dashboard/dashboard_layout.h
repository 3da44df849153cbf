#pragma once

#include <QRectF>
#include <QSizeF>

#include <vector>

namespace kestro {

/// How much room a section of the dashboard has: full, compact, or so little that some columns and captions
/// are left out. Tight sections are compact as well.
enum class SectionTier { full, compact, tight };

inline bool isCompact(SectionTier tier) {
    return tier != SectionTier::full;
}

/// How the sections stand in a row of a given width. Lengths in points.
struct SectionRowMetrics {
    double spacing = 0;  ///< between sections
    double inset = 0;    ///< left and right of the row, and of header and footer
    SectionTier tier = SectionTier::full;

    friend bool operator==(const SectionRowMetrics&, const SectionRowMetrics&) = default;
};

/// By the width per section: from 215 full, from 175 compact, below that tight. No section counts as one.
SectionRowMetrics sectionRowMetrics(double width, int visibleSections);

/// The header's and the footer's heights; a hairline ends the one and begins the other.
inline constexpr double kDashboardHeaderHeight = 44;
inline constexpr double kDashboardFooterHeight = 26;

/// The cards of the visible sections in a view of `size`: of equal width, top-aligned, 14 from header and
/// footer.
std::vector<QRectF> sectionFrames(const QSizeF& size, int visibleSections);

/// The common grid of every section, inside the padding of its card. Lengths in points from the grid's top.
struct SectionGrid {
    SectionTier tier = SectionTier::full;
    double padding = 0;
    double width = 0;
    double height = 0;

    static constexpr double titleHeight = 14;
    static constexpr double titleRule = 21;
    static constexpr double heroTop = 30;
    double heroHeight = 0;
    double rowsTop = 0;
    double pitch = 0;        ///< height of a row
    double detailPitch = 0;  ///< height of a row with a detail
    bool isDense = false;    ///< rows with a detail are set closer than usual

    double heroBottom() const { return heroTop + heroHeight; }
};

/// The grid in a card of `card`. Spare height goes to the hero first, up to 180.
SectionGrid sectionGrid(SectionTier tier, const QSizeF& card);

/// The list of processes in the activity section.
struct ProcessListLayout {
    double headTop = 0;  ///< of the column heads, 11 high
    double firstRow = 0;
    double rowHeight = 0;
    int rows = 0;          ///< how many of those asked for fit
    bool hasFoot = false;  ///< whether the machine is named at the foot
    double footRule = 0;   ///< of the hairline above the foot
    double footTop = 0;    ///< of its first line
    double cpuWidth = 0;   ///< of the columns; 0: not shown
    double memoryWidth = 0;
};

/// `limit` is how many processes the user wants; `sortsByMemory` decides which column stays where only one
/// fits.
ProcessListLayout processListLayout(const SectionGrid& grid, int limit, bool sortsByMemory);

}  // namespace kestro
