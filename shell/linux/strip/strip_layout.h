#pragma once

#include "shell/status_bar.h"
#include "ui/paint/text_style.h"

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

/// The layout of the strip, in points. Items are in a panel's order: the first one created is the rightmost.
namespace kestro::strip_layout {

inline constexpr int height = 28;
inline constexpr double cornerRadius = 8;
inline constexpr int itemHeight = 22;
inline constexpr int itemPadding = 8;
inline constexpr int symbolGap = 3;
inline constexpr double itemRadius = 6;
inline constexpr int separatorHeight = 14;

/// The title's text style.
TextStyle titleStyle(const StatusTitle& title);

/// Width of an item with that content; at least its height, so that it can be hit.
int itemWidth(const StatusContent& content);

/// The frames of items of those widths, in order of creation, on a strip that holds nothing else.
std::vector<QRect> itemFrames(const std::vector<int>& widths);

/// The strip's size around items of those widths; empty without items.
QSize stripSize(const std::vector<int>& widths);

/// The strip's top-left corner: 8 below the top and 10 left of the right edge of the area that panels leave
/// free, but never left of that area.
QPoint stripPosition(QSize strip, const QRect& available);

/// The area that a strip at its position leaves for windows: everything below it, or `available` if the strip is
/// elsewhere.
QRect clearOf(const QRect& strip, const QRect& available);

/// Left edges of the separator lines between items.
std::vector<int> separators(const std::vector<QRect>& frames);

}  // namespace kestro::strip_layout
