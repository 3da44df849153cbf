#pragma once

#include "core/telemetry/cpu_telemetry.h"
#include "ui/dashboard/dashboard_section.h"
#include "ui/dashboard/display_figure.h"
#include "ui/widgets/core_matrix_view.h"
#include "ui/widgets/sparkline_view.h"

#include <array>

namespace kestro {

/// The rows of the clusters: one, or two when the second one has cores; without figures while the load is not
/// measured yet. `compact` omits the details.
std::vector<RuledIndexContent> clusterRows(const CPUTelemetry& cpu, bool isMeasured, bool compact);

/// Total load with its breakdown and history, the clusters, and every core.
class ComputeSection : public DashboardSection {
    Q_OBJECT

public:
    explicit ComputeSection(const KestroServices& services, QWidget* parent = nullptr);

protected:
    void refresh() override;
    void arrange(const SectionGrid& grid) override;

private:
    /// One part of the total, beside the figure: its name above its value.
    struct Share {
        QString name;
        QString compactName;
        TextLabel* label = nullptr;
        TextLabel* value = nullptr;
    };

    void showCPU();
    void showHistory();
    void arrangeShares(const SectionGrid& grid);

    const TelemetryEngine& engine_;
    DisplayFigure* total_;
    std::array<Share, 3> shares_;
    SparklineView* history_;
    std::array<RuledIndexRow*, 2> clusters_;
    CoreMatrixView* matrix_;
    size_t shownClusters_ = 1;
};

}  // namespace kestro
