#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <vector>

#include "app/status_bar/status_bar.h"
#include "ui/controls/text_style.h"

namespace kestro {

/// Where everything stands on the strip, in points. Items stand in the order of a panel: the first one that was
/// made is the rightmost.
namespace strip_layout {

inline constexpr int height = 28;
inline constexpr double cornerRadius = 8;
inline constexpr int itemHeight = 22;
inline constexpr int itemPadding = 8;
inline constexpr int symbolGap = 3;
inline constexpr double itemRadius = 6;
inline constexpr int separatorHeight = 14;

/// How the title is set.
TextStyle titleStyle(const StatusTitle& title);

/// Width of the item for that content; never less than its height, so that it can be hit.
int itemWidth(const StatusContent& content);

/// The frames of items of those widths (first made first) in the strip, and nothing else on it.
std::vector<QRect> itemFrames(const std::vector<int>& widths);

/// The strip's size around items of those widths; empty for no items.
QSize stripSize(const std::vector<int>& widths);

/// The strip's top left corner: 8 below the top and 10 left of the right edge of what panels leave of the
/// screen, but not left of it.
QPoint stripPosition(QSize strip, const QRect& available);

/// Left edges of the hairlines between items.
std::vector<int> separators(const std::vector<QRect>& frames);

}  // namespace strip_layout

}  // namespace kestro
