#pragma once

#include <QRect>

#include <cstddef>
#include <vector>

namespace kestro {

/// Where the parts of the popover stand, in points. Everything is fixed but the cooling block, which depends
/// on the number of fans.
namespace popover_geometry {

inline constexpr QSize size(330, 325);
inline constexpr int left = 14;
inline constexpr int right = 316;
inline constexpr int textIndent = 15;  ///< from the symbols' column to the text after them

/// At most so many fans have a row; the dashboard shows the others.
inline constexpr std::size_t mostFans = 6;

/// Tops of the hairlines between the blocks.
inline constexpr int hairlines[] = {40, 100, 141, 241, 267, 299};

/// A line of the full width.
constexpr QRect line(int top, int bottom) {
    return {left, top, right - left, bottom - top};
}

/// The cooling block below its heading.
struct CoolingBlock {
    std::vector<QRect> fans;  ///< one per shown fan, in order; the single line for a machine without fans
    QRect peak;
    QRect profile;
};

/// One line for no fan or one fan; two rows for two; two columns for up to four, three for more.
CoolingBlock coolingBlock(std::size_t fanCount);

}  // namespace popover_geometry

}  // namespace kestro
