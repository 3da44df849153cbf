#pragma once

#include "core/telemetry/cpu_telemetry.h"
#include "ui/controls/view.h"

#include <vector>

namespace kestro {

/// How much a cell of the core matrix shows, depending on its height: both texts at full size, both at 8 points,
/// or only a fill of the whole cell.
enum class CoreCellDetail { full, small, fill };

/// The grid of the core matrix in a given area. Lengths in points.
struct CoreMatrixLayout {
    int columns = 0;
    int rows = 0;
    double gap = 0;
    double cellWidth = 0;
    double cellHeight = 0;
    CoreCellDetail detail = CoreCellDetail::full;

    QRectF cell(int index) const;

    friend bool operator==(const CoreMatrixLayout&, const CoreMatrixLayout&) = default;
};

/// Two columns with gaps of 4 (compact) or three with gaps of 6, with cells as high as fits, at most 44. Any
/// number of cores fits: if cells would be lower than 4, the gaps shrink first, then columns are added as long as
/// each stays 10 wide.
CoreMatrixLayout coreMatrixLayout(int cores, const QSizeF& area, bool isCompact);

/// The load of each core as a cell with its number, its load and a bar. A changed core repaints only its own cell.
/// Cells are numbered by position; the help text of a cell gives the kernel's number, which other tools show.
class CoreMatrixView : public View {
    Q_OBJECT

public:
    explicit CoreMatrixView(bool isCompact, QWidget* parent = nullptr);

    void setCores(const std::vector<CoreLoad>& cores);
    /// While the loads are not measured yet, the cells hold only their numbers. Initially measured.
    void setMeasured(bool isMeasured);
    void setCompact(bool isCompact);

    AccessibleInfo accessibleInfo() const override;
    std::vector<AccessibleInfo> accessibleParts() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    CoreMatrixLayout layoutNow() const;
    void showHelpAt(const QPointF& position);
    void paintCell(QPainter& painter, const CoreLoad& core, const QRectF& cell, CoreCellDetail detail) const;

    std::vector<CoreLoad> cores_;
    bool isCompact_;
    bool isMeasured_ = true;
};

}  // namespace kestro
