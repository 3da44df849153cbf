#include "ui/widgets/core_matrix_view.h"

#include "core/base/text.h"
#include "ui/format/figure_text.h"
#include "ui/format/unmeasured.h"
#include "ui/paint/hairline.h"
#include "ui/paint/ink.h"
#include "ui/paint/tall_shapes.h"
#include "ui/paint/text_painter.h"
#include "ui/paint/zoom.h"
#include "ui/widgets/visible_change.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr int compactColumns = 2;
constexpr int fullColumns = 3;
constexpr double compactGap = 4;
constexpr double fullGap = 6;
constexpr double narrowestCell = 10;
constexpr double tallestCell = 44;
constexpr double lowestCell = 4;
constexpr double smallestGap = 1;
constexpr double fullDetailHeight = 20;
constexpr double smallDetailHeight = 12;

constexpr double cellRadius = 3;
constexpr double cellOpacity = 0.04;
constexpr double secondClusterOpacity = 0.6;
constexpr double busyLoad = 90;

CoreCellDetail detailOf(double cellHeight) {
    if (cellHeight >= fullDetailHeight) {
        return CoreCellDetail::full;
    }
    return cellHeight >= smallDetailHeight ? CoreCellDetail::small : CoreCellDetail::fill;
}

CoreMatrixLayout withColumns(int columns, int cores, const QSizeF& area, double nominalGap) {
    CoreMatrixLayout layout;
    layout.columns = columns;
    layout.rows = (cores + columns - 1) / columns;
    const double lowest = lowestCell * layout.rows;
    const double gapThatFits = layout.rows > 1 ? (area.height() - lowest) / (layout.rows - 1) : nominalGap;
    layout.gap = std::clamp(gapThatFits, smallestGap, nominalGap);
    const double free = area.height() - layout.gap * (layout.rows - 1);
    layout.cellHeight = std::clamp(free / layout.rows, 0.0, tallestCell);
    layout.cellWidth = std::max(0.0, (area.width() - layout.gap * (columns - 1)) / columns);
    layout.detail = detailOf(layout.cellHeight);
    return layout;
}

Ink inkOf(const CoreLoad& core) {
    if (core.usagePercentage >= busyLoad) {
        return KestroTheme::accentCritical;
    }
    const Ink accent = KestroTheme::accentCool;
    return core.isSuperCluster ? accent : accent.faded(secondClusterOpacity);
}

/// Whether two states of a core look the same in a cell of `pixels` device pixels.
bool looksSame(const CoreLoad& a, const CoreLoad& b, double pixels) {
    return a.id == b.id && a.number() == b.number() && a.isOnline == b.isOnline &&
           a.isSuperCluster == b.isSuperCluster &&
           wholeNumber(a.usagePercentage) == wholeNumber(b.usagePercentage) &&
           std::abs(a.usagePercentage - b.usagePercentage) / 100 * pixels < visiblePixels;
}

QString helpOf(const CoreLoad& core) {
    const QString name = QStringLiteral("CPU %1").arg(core.number());
    return core.isOnline ? name : name + QStringLiteral(", offline");
}

QString numberOf(const CoreLoad& core) {
    return QStringLiteral("%1").arg(core.id, 2, 10, QLatin1Char('0'));
}

}  // namespace

QRectF CoreMatrixLayout::cell(int index) const {
    const int row = index / columns;
    const int column = index % columns;
    return {column * (cellWidth + gap), row * (cellHeight + gap), cellWidth, cellHeight};
}

CoreMatrixLayout coreMatrixLayout(int cores, const QSizeF& area, bool isCompact) {
    if (cores <= 0 || area.isEmpty()) {
        return {};
    }
    const double gap = isCompact ? compactGap : fullGap;
    int columns = isCompact ? compactColumns : fullColumns;
    CoreMatrixLayout layout = withColumns(columns, cores, area, gap);
    while (layout.cellHeight < lowestCell && columns < cores) {
        const CoreMatrixLayout denser = withColumns(++columns, cores, area, gap);
        if (denser.cellWidth < narrowestCell) {
            break;
        }
        layout = denser;
    }
    return layout;
}

CoreMatrixView::CoreMatrixView(bool isCompact, QWidget* parent) : View(parent), isCompact_(isCompact) {
    setMouseTracking(true);
}

void CoreMatrixView::setCores(const std::vector<CoreLoad>& cores) {
    const CoreMatrixLayout layout = layoutNow();
    // Without cores or room there are no cells.
    if (cores.size() != cores_.size() || layout.columns == 0) {
        cores_ = cores;
        update();
        return;
    }
    const double pixels = zoomOf(*this) * devicePixelRatioF();
    for (size_t i = 0; i < cores.size(); ++i) {
        if (!looksSame(cores[i], cores_[i], layout.cellWidth * pixels)) {
            cores_[i] = cores[i];
            update(touchedPoints(*this, layout.cell(static_cast<int>(i))));
        }
    }
}

void CoreMatrixView::setMeasured(bool isMeasured) {
    if (isMeasured != isMeasured_) {
        isMeasured_ = isMeasured;
        update();
    }
}

void CoreMatrixView::setCompact(bool isCompact) {
    if (isCompact != isCompact_) {
        isCompact_ = isCompact;
        update();
    }
}

AccessibleInfo CoreMatrixView::accessibleInfo() const {
    AccessibleInfo info = View::accessibleInfo();
    info.role = QAccessible::Grouping;
    info.name = QStringLiteral("Core loads");
    return info;
}

std::vector<AccessibleInfo> CoreMatrixView::accessibleParts() const {
    std::vector<AccessibleInfo> parts;
    const CoreMatrixLayout layout = layoutNow();
    if (layout.columns == 0) {
        return parts;
    }
    for (size_t i = 0; i < cores_.size(); ++i) {
        AccessibleInfo part;
        const CoreLoad& core = cores_[i];
        const QString load = QStringLiteral("%1 percent").arg(wholeNumber(core.usagePercentage));
        const QString state = core.isOnline ? load : QStringLiteral("offline");
        part.name = QStringLiteral("Core %1, %2").arg(core.id).arg(isMeasured_ ? state : pendingWords());
        part.description = core.kernelNumber ? helpOf(core) : QString();
        part.area = touchedPoints(*this, layout.cell(static_cast<int>(i)));
        parts.push_back(std::move(part));
    }
    return parts;
}

bool CoreMatrixView::event(QEvent* event) {
    if (event->type() == QEvent::Enter) {
        showHelpAt(static_cast<QEnterEvent*>(event)->position());
    } else if (event->type() == QEvent::MouseMove) {
        showHelpAt(static_cast<QMouseEvent*>(event)->position());
    }
    return View::event(event);
}

void CoreMatrixView::showHelpAt(const QPointF& position) {
    const CoreMatrixLayout layout = layoutNow();
    for (size_t i = 0; layout.columns > 0 && i < cores_.size(); ++i) {
        // Including the gaps beside it.
        if (layout.cell(static_cast<int>(i))
                .adjusted(0, 0, layout.gap, layout.gap)
                .contains(position / zoomOf(*this))) {
            setHelp(helpOf(cores_[i]));
        }
    }
}

void CoreMatrixView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    const CoreMatrixLayout layout = layoutNow();
    if (layout.columns == 0) {
        return;
    }
    for (size_t i = 0; i < cores_.size(); ++i) {
        const QRectF cell = layout.cell(static_cast<int>(i));
        if (event->region().intersects(touchedPoints(*this, cell))) {
            paintCell(painter, cores_[i], snappedToDevice(painter, cell), layout.detail);
        }
    }
}

void CoreMatrixView::paintCell(QPainter& painter, const CoreLoad& core, const QRectF& cell,
                               CoreCellDetail detail) const {
    const bool isFull = detail == CoreCellDetail::full;
    const bool isFill = detail == CoreCellDetail::fill;
    const double radius = std::min(cellRadius, cell.height() / 2);
    QPainterPath outline;
    outline.addRoundedRect(cell, radius, radius);
    fillTallRounded(painter, cell, radius, Ink::white(cellOpacity).color());

    const double share = isMeasured_ ? std::clamp(core.usagePercentage / 100, 0.0, 1.0) : 0;
    const double bar = isFill ? cell.height() : snappedLength(isFull ? 2 : 1.5, deviceScale(painter));
    QPainterPath load;
    load.addRect(QRectF(cell.left(), cell.bottom() - bar, cell.width() * share, bar));
    painter.fillPath(outline.intersected(load), inkOf(core).color());
    if (isFill) {
        return;
    }
    const double inset = isFull ? 6 : 4;
    const QRectF texts = cell.adjusted(inset, 0, -inset, -bar);
    const TextStyle number{isFull ? 9.0 : 8.0, cell.height(), QFont::Medium, 0, KestroTheme::textSecondary};
    const TextStyle figure{isFull ? 10.0 : 8.0, cell.height(), QFont::DemiBold, 0, KestroTheme::textPrimary};
    drawText(painter, texts, numberOf(core), number, Qt::AlignLeft, TextFit::value);
    const QString shown = isMeasured_ ? wholeText(core.usagePercentage) : pendingFigure();
    drawText(painter, texts, shown, figure, Qt::AlignRight, TextFit::value);
}

CoreMatrixLayout CoreMatrixView::layoutNow() const {
    return coreMatrixLayout(static_cast<int>(cores_.size()), designRect(*this).size(), isCompact_);
}

}  // namespace kestro
