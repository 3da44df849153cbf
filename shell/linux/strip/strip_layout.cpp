#include "shell/linux/strip/strip_layout.h"

#include "shell/linux/panel_look.h"
#include "ui/paint/text_painter.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kestro::strip_layout {

namespace {

constexpr int inset = (height - itemHeight) / 2;
constexpr int marginTop = 8;
constexpr int marginRight = 10;

}  // namespace

TextStyle titleStyle(const StatusTitle& title) {
    return {static_cast<double>(title.pointSize), static_cast<double>(itemHeight),
            static_cast<QFont::Weight>(title.weight), 0, panelColor(title.color, PanelScheme::dark)};
}

int itemWidth(const StatusContent& content) {
    const QString text = content.title.text.trimmed();
    double width = 2 * itemPadding;
    if (content.symbol) {
        width += content.symbol->pointSize;
    }
    if (!text.isEmpty()) {
        width += textWidth(text, titleStyle(content.title)) + (content.symbol ? symbolGap : 0);
    }
    return std::max(itemHeight, static_cast<int>(std::ceil(width)));
}

std::vector<QRect> itemFrames(const std::vector<int>& widths) {
    std::vector<QRect> frames;
    int right = inset + std::accumulate(widths.begin(), widths.end(), 0);
    for (const int width : widths) {
        frames.emplace_back(right - width, inset, width, itemHeight);
        right -= width;
    }
    return frames;
}

QSize stripSize(const std::vector<int>& widths) {
    if (widths.empty()) {
        return {};
    }
    return {2 * inset + std::accumulate(widths.begin(), widths.end(), 0), height};
}

QPoint stripPosition(QSize strip, const QRect& available) {
    const int left = available.right() + 1 - marginRight - strip.width();
    return {std::max(available.left(), left), available.top() + marginTop};
}

QRect clearOf(const QRect& strip, const QRect& available) {
    return available.intersects(strip) ? available.adjusted(0, 2 * marginTop + height, 0, 0) : available;
}

std::vector<int> separators(const std::vector<QRect>& frames) {
    std::vector<int> edges;
    for (std::size_t index = 0; index + 1 < frames.size(); ++index) {
        edges.push_back(frames[index].left());
    }
    return edges;
}

}  // namespace kestro::strip_layout
