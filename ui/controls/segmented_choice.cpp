#include "ui/controls/segmented_choice.h"

#include "ui/controls/surface_paint.h"
#include "ui/controls/text_painter.h"
#include "ui/theme/hairline.h"
#include "ui/theme/motion.h"

#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double kPadding = 2;
constexpr double kGap = 2;
constexpr double kFrameRadius = 6;
constexpr double kSegmentRadius = 4;
constexpr double kTextPadding = 12;
constexpr double kDetailGap = 8;
constexpr double kFrameOpacity = 0.04;
constexpr double kMarkOpacity = 0.11;
constexpr double kHoveredTextFrom = 0.5;

const TextStyle& styleOf(bool isChosen) {
    static const TextStyle chosen = [] {
        TextStyle style = text_styles::segment;
        style.weight = text_styles::w600;
        style.ink = KestroTheme::textPrimary;
        return style;
    }();
    return isChosen ? chosen : text_styles::segment;
}

double widthOf(const Segment& segment) {
    const double detail =
        segment.detail.isEmpty() ? 0 : kDetailGap + textWidth(segment.detail, text_styles::segment);
    return textWidth(segment.text, styleOf(true)) + detail;
}

}  // namespace

std::vector<QRectF> segmentAreas(const QSizeF& size, int count) {
    std::vector<QRectF> areas;
    const double width = (size.width() - 2 * kPadding - kGap * (count - 1)) / std::max(1, count);
    for (int i = 0; i < count; ++i) {
        areas.emplace_back(kPadding + i * (width + kGap), kPadding, width, size.height() - 2 * kPadding);
    }
    return areas;
}

SegmentedChoice::SegmentedChoice(std::vector<Segment> segments, int height, QWidget* parent)
    : Control(parent), segments_(std::move(segments)), height_(height), mark_(0, [this] { update(); }) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMouseTracking(true);
}

void SegmentedChoice::setChosen(int index) {
    const int valid = index >= 0 && index < static_cast<int>(segments_.size()) ? index : -1;
    if (valid == chosen_) {
        return;
    }
    const bool slides = isVisible() && chosen_ >= 0 && valid >= 0;
    chosen_ = valid;
    announceValue();
    if (slides) {
        mark_.moveTo(valid, motion::slide);
    } else {
        mark_.reset(std::max(0, valid));
    }
    update();
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
    const double width = count * (widest + 2 * kTextPadding) + kGap * (count - 1) + 2 * kPadding;
    return {static_cast<int>(std::ceil(width)), height_};
}

QSize SegmentedChoice::minimumSizeHint() const {
    return {40 * static_cast<int>(segments_.size()), height_};
}

AccessibleInfo SegmentedChoice::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::Grouping;
    info.value = chosen_ >= 0 ? segments_[static_cast<size_t>(chosen_)].text : QString();
    return info;
}

std::vector<AccessibleInfo> SegmentedChoice::accessibleParts() const {
    std::vector<AccessibleInfo> parts;
    const auto areas = segmentAreas(size(), static_cast<int>(segments_.size()));
    for (size_t i = 0; i < segments_.size(); ++i) {
        AccessibleInfo part;
        part.role = QAccessible::RadioButton;
        part.name = segments_[i].text;
        part.description = segments_[i].detail;
        part.checked = static_cast<int>(i) == chosen_;
        part.area = areas[i].toAlignedRect();
        part.press = [self = const_cast<SegmentedChoice*>(this), i] { self->choose(static_cast<int>(i)); };
        parts.push_back(std::move(part));
    }
    return parts;
}

void SegmentedChoice::paint(QPainter& painter) {
    const QRectF frame = rect();
    paintRounded(painter, frame, kFrameRadius, Ink::white(kFrameOpacity).color());
    kestroHairlineBorder(painter, frame, kFrameRadius, KestroTheme::hairline());
    const auto areas = segmentAreas(size(), static_cast<int>(segments_.size()));
    if (chosen_ >= 0) {
        const QRectF& first = areas.front();
        const QRectF mark = first.translated(mark_.value() * (first.width() + kGap), 0);
        paintRounded(painter, mark, kSegmentRadius, Ink::white(kMarkOpacity).color());
        kestroHairlineBorder(painter, mark, kSegmentRadius, KestroTheme::hairlineStrong());
    }
    for (int i = 0; i < static_cast<int>(areas.size()); ++i) {
        paintSegment(painter, i, areas[static_cast<size_t>(i)]);
    }
}

void SegmentedChoice::paintSegment(QPainter& painter, int index, const QRectF& area) const {
    const bool isChosen = index == chosen_;
    const bool isHovered = index == hovered_ && !isChosen;
    if (isHovered) {
        const double fill =
            pressed_ == index ? StateOpacity{0, 0.05, 0.03}.at(hovering(), pressing()) : 0.05 * hovering();
        paintRounded(painter, area, kSegmentRadius, Ink::white(fill).color());
    }
    const Segment& segment = segments_[static_cast<size_t>(index)];
    TextStyle style = styleOf(isChosen);
    if (isHovered && hovering() > kHoveredTextFrom) {
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
    const double textRoom = std::max(0.0, room.width() - kDetailGap - detailWidth);
    const double text = std::min(textWidth(segment.text, style), textRoom);
    const double left = room.left() + (room.width() - text - kDetailGap - detailWidth) / 2;
    drawText(painter, {left, room.top(), text + 1, room.height()}, segment.text, style);
    drawText(painter, {left + text + kDetailGap, room.top(), detailWidth + 1, room.height()}, segment.detail,
             detail, Qt::AlignLeft, TextFit::value);
}

bool SegmentedChoice::event(QEvent* event) {
    if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter) {
        const int index = indexAt(static_cast<QHoverEvent*>(event)->position());
        if (index != hovered_) {
            hovered_ = index;
            update();
        }
    }
    return Control::event(event);
}

void SegmentedChoice::mousePressEvent(QMouseEvent* event) {
    pressed_ = indexAt(event->position());
    Control::mousePressEvent(event);
}

void SegmentedChoice::mouseReleaseEvent(QMouseEvent* event) {
    Control::mouseReleaseEvent(event);
    const int released = indexAt(event->position());
    if (event->button() == Qt::LeftButton && released >= 0 && released == pressed_) {
        choose(released);
    }
    pressed_ = -1;
}

void SegmentedChoice::keyPressEvent(QKeyEvent* event) {
    const int last = static_cast<int>(segments_.size()) - 1;
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            choose(std::max(0, chosen_ - 1));
            break;
        case Qt::Key_Right:
        case Qt::Key_Down:
            choose(std::min(last, chosen_ + 1));
            break;
        case Qt::Key_Home:
            choose(0);
            break;
        case Qt::Key_End:
            choose(last);
            break;
        default:
            event->ignore();
            return;
    }
    showFocus();
}

void SegmentedChoice::choose(int index) {
    const int before = chosen_;
    setChosen(index);
    if (chosen_ != before && onChosen_) {
        onChosen_(chosen_);
    }
}

int SegmentedChoice::indexAt(const QPointF& position) const {
    const auto areas = segmentAreas(size(), static_cast<int>(segments_.size()));
    const auto found = std::ranges::find_if(areas, [&](const QRectF& area) { return area.contains(position); });
    return found == areas.end() ? -1 : static_cast<int>(found - areas.begin());
}

}  // namespace kestro
