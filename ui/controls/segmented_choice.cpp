#include "ui/controls/segmented_choice.h"

#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/theme/motion.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double padding = 2;
constexpr double segmentGap = 2;
constexpr double frameRadius = 6;
constexpr double segmentRadius = 4;
constexpr double textPadding = 12;
constexpr double detailGap = 8;
constexpr double frameOpacity = 0.04;
constexpr double markOpacity = 0.11;
constexpr double hoveredTextFrom = 0.5;

double widthOf(const Segment& segment) {
    const double detail =
        segment.detail.isEmpty() ? 0 : detailGap + textWidth(segment.detail, text_styles::segment);
    return textWidth(segment.text, text_styles::chosenSegment) + detail;
}

}  // namespace

std::vector<QRectF> segmentAreas(const QSizeF& size, int count) {
    std::vector<QRectF> areas;
    const double width = (size.width() - 2 * padding - segmentGap * (count - 1)) / std::max(1, count);
    for (int i = 0; i < count; ++i) {
        areas.emplace_back(padding + i * (width + segmentGap), padding, width, size.height() - 2 * padding);
    }
    return areas;
}

SegmentedChoice::SegmentedChoice(std::vector<Segment> segments, int height, QWidget* parent)
    : ChoiceBar(-1, Trigger::release, parent),
      segments_(std::move(segments)),
      height_(height),
      mark_(0, [this] { update(); }) {
    setMouseTracking(true);
}

void SegmentedChoice::setChosen(int index) {
    const int valid = index >= 0 && index < static_cast<int>(segments_.size()) ? index : -1;
    if (valid == chosen()) {
        return;
    }
    const bool slides = isVisible() && chosen() >= 0 && valid >= 0;
    take(valid);
    if (slides) {
        mark_.moveTo(valid, motion::slide);
    } else {
        mark_.reset(std::max(0, valid));
    }
}

void SegmentedChoice::setSegments(std::vector<Segment> segments) {
    if (segments != segments_) {
        segments_ = std::move(segments);
        update();
    }
}

QSize SegmentedChoice::sizeHint() const {
    double widest = 0;
    for (const Segment& segment : segments_) {
        widest = std::max(widest, widthOf(segment));
    }
    const auto count = static_cast<double>(segments_.size());
    const double width = count * (widest + 2 * textPadding) + segmentGap * (count - 1) + 2 * padding;
    return {static_cast<int>(std::ceil(width)), height_};
}

QSize SegmentedChoice::minimumSizeHint() const {
    return {40 * static_cast<int>(segments_.size()), height_};
}

AccessibleInfo SegmentedChoice::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::Grouping;
    info.value = chosen() >= 0 ? segments_[static_cast<size_t>(chosen())].text : QString();
    return info;
}

std::vector<AccessibleInfo> SegmentedChoice::accessibleParts() const {
    std::vector<AccessibleInfo> parts;
    const auto areas = this->areas();
    for (size_t i = 0; i < segments_.size(); ++i) {
        AccessibleInfo part;
        part.role = QAccessible::RadioButton;
        part.name = segments_[i].text;
        part.description = segments_[i].detail;
        part.checked = static_cast<int>(i) == chosen();
        part.area = areas[i].toAlignedRect();
        part.press = [self = const_cast<SegmentedChoice*>(this), i] { self->choose(static_cast<int>(i)); };
        parts.push_back(std::move(part));
    }
    return parts;
}

void SegmentedChoice::paint(QPainter& painter) {
    const QRectF frame = rect();
    paintRounded(painter, frame, frameRadius, Ink::white(frameOpacity).color());
    kestroHairlineBorder(painter, frame, frameRadius, KestroTheme::hairline());
    const auto areas = this->areas();
    if (chosen() >= 0) {
        const QRectF& first = areas.front();
        const QRectF mark = first.translated(mark_.value() * (first.width() + segmentGap), 0);
        paintRounded(painter, mark, segmentRadius, Ink::white(markOpacity).color());
        kestroHairlineBorder(painter, mark, segmentRadius, KestroTheme::hairlineStrong());
    }
    for (int i = 0; i < static_cast<int>(areas.size()); ++i) {
        paintSegment(painter, i, areas[static_cast<size_t>(i)]);
    }
}

void SegmentedChoice::paintSegment(QPainter& painter, int index, const QRectF& area) const {
    const bool isChosen = index == chosen();
    const bool isHovered = index == hovered() && !isChosen;
    if (isHovered) {
        const double fill =
            pressed() == index ? StateOpacity{0, 0.05, 0.03}.at(hovering(), pressing()) : 0.05 * hovering();
        paintRounded(painter, area, segmentRadius, Ink::white(fill).color());
    }
    const Segment& segment = segments_[static_cast<size_t>(index)];
    TextStyle style = isChosen ? text_styles::chosenSegment : text_styles::segment;
    if (isHovered && hovering() > hoveredTextFrom) {
        style.ink = KestroTheme::textPrimary;
    }
    const QRectF room = area.adjusted(4, 0, -4, 0);
    if (segment.detail.isEmpty()) {
        drawText(painter, room, segment.text, style, Qt::AlignHCenter);
        return;
    }
    TextStyle detail = text_styles::segment;
    detail.ink = style.ink;
    const double detailWidth = textWidth(segment.detail, detail);
    const double textRoom = std::max(0.0, room.width() - detailGap - detailWidth);
    const double text = std::min(textWidth(segment.text, style), textRoom);
    const double left = room.left() + (room.width() - text - detailGap - detailWidth) / 2;
    drawText(painter, {left, room.top(), text + 1, room.height()}, segment.text, style);
    drawText(painter, {left + text + detailGap, room.top(), detailWidth + 1, room.height()}, segment.detail,
             detail, Qt::AlignLeft, TextFit::value);
}

void SegmentedChoice::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
            chooseNext(-1);
            break;
        case Qt::Key_Down:
            chooseNext(1);
            break;
        default:
            ChoiceBar::keyPressEvent(event);
            break;
    }
}

std::vector<QRectF> SegmentedChoice::areas() const {
    return segmentAreas(size(), static_cast<int>(segments_.size()));
}

}  // namespace kestro
