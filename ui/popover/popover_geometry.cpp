#include "ui/popover/popover_geometry.h"

#include <algorithm>

namespace kestro::popover_geometry {

namespace {

constexpr int rowTops[] = {164, 180};
constexpr int rowHeight = 16;

int columns(std::size_t fanCount) {
    return fanCount > 4 ? 3 : fanCount > 2 ? 2 : 1;
}

}  // namespace

CoolingBlock coolingBlock(std::size_t fanCount) {
    if (fanCount < 2) {
        return {{line(169, 185)}, line(188, 202), line(208, 230)};
    }
    CoolingBlock block{{}, line(196, 210), line(212, 234)};
    const int across = columns(fanCount);
    const int gap = across == 2 ? 14 : 10;
    const int width = (right - left - (across - 1) * gap) / across;
    const std::size_t shown = std::min(fanCount, mostFans);
    for (std::size_t i = 0; i < shown; ++i) {
        const int column = static_cast<int>(i) % across;
        const int row = static_cast<int>(i) / across;
        // The last column ends at the common right edge of the values.
        const int x = column == across - 1 ? right - width : left + column * (width + gap);
        block.fans.emplace_back(x, rowTops[row], width, rowHeight);
    }
    return block;
}

}  // namespace kestro::popover_geometry
