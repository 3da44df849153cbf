#pragma once

#include "core/telemetry/fan_telemetry.h"
#include "core/telemetry/thermal_telemetry.h"
#include "ui/dashboard/dashboard_section.h"
#include "ui/dashboard/temperature_rows.h"
#include "ui/widgets/metric_gauge.h"

#include <vector>

namespace kestro {

/// The contents of the cooling section's two gauges: two fans, one fan and the die, or the die's average and peak.
/// There are no gauges for more than two fans. `targets` are the speeds requested by the custom curves for the
/// left and the right fan; empty for the other profiles.
std::vector<GaugeContent> coolingGauges(const std::vector<FanTelemetry>& fans, const ThermalTelemetry& thermals,
                                        const MeasuredTemperatures& measured, const std::vector<double>& targets,
                                        SectionTier tier);

/// The areas of the rows for more than two fans in a hero of `width` by `height`: rows of at most 28, in two
/// columns above four fans. Rows that do not fit are omitted.
std::vector<QRectF> fanRowAreas(int fans, double width, double height);

/// Fans, temperatures, and the active profile.
class CoolingSection : public DashboardSection {
    Q_OBJECT

public:
    explicit CoolingSection(const KestroServices& services, QWidget* parent = nullptr);

protected:
    void refresh() override;
    void arrange(const SectionGrid& grid) override;

private:
    void showFans();
    void showTemperatures();
    void showProfile();
    void showFanGauges();
    void showFanRows();
    void arrangeFans(const SectionGrid& grid);
    void arrangeFoot(const SectionGrid& grid);
    std::vector<double> targets() const;

    KestroServices services_;
    std::array<MetricGauge*, 2> gauges_;
    std::vector<RuledIndexRow*> fanRows_;
    std::array<RuledIndexRow*, 4> temperatures_;
    SymbolView* profileSymbol_;
    TextLabel* profile_;
    QString profileName_;
    TextLabel* nodes_;
    size_t shownFans_ = 0;
};

}  // namespace kestro
