#pragma once

#include "core/model/system_power_mode.h"
#include "core/telemetry/network_telemetry.h"
#include "core/telemetry/power_telemetry.h"
#include "ui/dashboard/dashboard_section.h"
#include "ui/widgets/sparkline_view.h"

#include <array>
#include <string>

namespace kestro {

/// The five rows of the input, output and power section.
std::array<RuledIndexContent, 5> ioRows(const NetworkTelemetry& network, const PowerTelemetry& power,
                                        SystemPowerMode mode, const std::string& uptime, bool compact);

/// Network rates with their histories, the address, the battery, the power mode and the uptime.
class IOSection : public DashboardSection {
    Q_OBJECT

public:
    explicit IOSection(const KestroServices& services, QWidget* parent = nullptr);

protected:
    void refresh() override;
    void arrange(const SectionGrid& grid) override;

private:
    /// One direction: its arrow, name and rate, above its history.
    struct Direction {
        SymbolView* arrow;
        TextLabel* name;
        TextLabel* rate;
        SparklineView* history;
    };

    Direction makeDirection(const QString& symbol, const QString& name, const Ink& ink);
    void showRate(const Direction& direction, double bytesPerSecond) const;
    void showRates();
    void showRows();
    void arrangeDirection(const Direction& direction, const QRectF& area) const;

    KestroServices services_;
    Direction download_;
    Direction upload_;
    std::array<RuledIndexRow*, 5> rows_;
};

}  // namespace kestro
