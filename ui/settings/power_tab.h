#pragma once

#include "core/telemetry/power_telemetry.h"
#include "ui/settings/settings_pane.h"

namespace kestro {

class SymbolView;
class TextLabel;

/// "4h 12m remaining · 5288 / 6075 mAh". Without the capacities if the battery reports only percentages, or if
/// there is none.
QString batteryLine(const PowerTelemetry& power);

/// The battery and the system's power mode.
class PowerTab : public SettingsPane {
    Q_OBJECT

public:
    explicit PowerTab(const KestroServices& services);

private:
    QWidget* batteryCard();
    QWidget* modesCard();
    void showBattery();

    TextLabel* level_ = nullptr;
    SymbolView* symbol_ = nullptr;
    TextLabel* health_ = nullptr;
    TextLabel* line_ = nullptr;
};

}  // namespace kestro
