#pragma once

#include "ui/widgets/ruled_index_row.h"

#include <QRectF>
#include <QSizeF>

#include <vector>

namespace kestro {

/// How much room a section of the dashboard has: full, compact, or so little that some columns and captions are
/// omitted. Tight sections are also compact.
enum class SectionTier { full, compact, tight };

inline bool isCompact(SectionTier tier) {
    return tier != SectionTier::full;
}

/// How much the whole dashboard is enlarged in a window of this size: in eighths from 1 to 5, as far as full
/// sections remain and a height of 560 design points. Where more than 680 points in height would remain, as far as
/// compact sections do; where 880 would remain even then, as far as two rows of full sections do.
double dashboardZoom(const QSizeF& window, int visibleSections);

/// How many sections are side by side in a view of `size`: all, or half of them where 880 points in height leave
/// room for two rows of cards of the usual height. At least 1.
int sectionColumns(const QSizeF& size, int visibleSections);

/// The layout of the sections in a row of a given width. Lengths in design points, here and below.
struct SectionRowMetrics {
    double spacing = 0;  ///< between sections
    double inset = 0;    ///< left and right of the row, and of header and footer
    SectionTier tier = SectionTier::full;

    friend bool operator==(const SectionRowMetrics&, const SectionRowMetrics&) = default;
};

/// Chosen by the width per column: full from 215, compact from 175, tight below. No column counts as one.
SectionRowMetrics sectionRowMetrics(double width, int columns);

/// The heights of the header and the footer, each including its hairline.
inline constexpr double dashboardHeaderHeight = 44;
inline constexpr double dashboardFooterHeight = 26;

/// The cards of the visible sections in a view of `size`: of equal height, in each row of equal width, 14 from
/// header and footer.
std::vector<QRectF> sectionFrames(const QSizeF& size, int visibleSections);

/// The grid shared by all sections, inside the padding of a card. Positions are from the grid's top.
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
    RowSpacing spacing = RowSpacing::regular;
    double heroGrowth = 0;     ///< the part of the hero's height that a high card adds
    bool namesScales = false;  ///< whether sparklines have room to name their full height

    double heroBottom() const { return heroTop + heroHeight; }
};

/// The grid of a card of size `card`. The spare height of a card that is higher than usual goes to the hero and to
/// the rows, up to a limit; the rest stays empty.
SectionGrid sectionGrid(SectionTier tier, const QSizeF& card);

/// The list of processes in the activity section.
struct ProcessListLayout {
    double headTop = 0;  ///< of the column heads, 11 high
    double firstRow = 0;
    double rowHeight = 0;
    int rows = 0;          ///< how many of the requested processes fit
    bool hasFoot = false;  ///< whether the foot shows the machine's name
    double footRule = 0;   ///< of the hairline above the foot
    double footTop = 0;    ///< of its first line
    double cpuWidth = 0;   ///< of the columns; 0: not shown
    double memoryWidth = 0;
};

/// `limit` is the number of processes that the user wants; `sortsByMemory` selects the column to keep where only
/// one fits.
ProcessListLayout processListLayout(const SectionGrid& grid, int limit, bool sortsByMemory);

}  // namespace kestro
