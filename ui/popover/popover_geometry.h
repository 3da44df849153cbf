#pragma once

#include <QRect>

#include <cstddef>
#include <vector>

/// The positions of the popover's parts, in points. Everything is fixed except the cooling block, which depends on
/// the number of fans.
namespace kestro::popover_geometry {

inline constexpr QSize size(330, 325);
inline constexpr int left = 14;
inline constexpr int right = 316;
inline constexpr int textIndent = 15;  ///< from the symbol column to the text after it

/// The maximum number of fans with a row; the dashboard shows the others.
inline constexpr std::size_t mostFans = 6;

/// Tops of the hairlines between the blocks.
inline constexpr int hairlines[] = {40, 100, 141, 241, 267, 299};

/// A line of the full width.
constexpr QRect line(int top, int bottom) {
    return {left, top, right - left, bottom - top};
}

/// The cooling block below its heading.
struct CoolingBlock {
    std::vector<QRect> fans;  ///< one per shown fan, in order; on a machine without fans, its single line
    QRect peak;
    QRect profile;
};

/// One line for up to one fan; two rows for two; two columns for up to four, three for more.
CoolingBlock coolingBlock(std::size_t fanCount);

}  // namespace kestro::popover_geometry
