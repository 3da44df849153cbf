#pragma once

#include "ui/settings/settings_pane.h"

namespace kestro {

class Badge;
class TextLabel;

/// The hardware interfaces that the figures are read from.
class SensorsTab : public SettingsPane {
    Q_OBJECT

public:
    explicit SensorsTab(const KestroServices& services);

private:
    struct SensorRow {
        QWidget* widget = nullptr;
        TextLabel* value = nullptr;
        Badge* badge = nullptr;
    };

    SensorRow sensorRow(const Words& symbol, const Words& name, const Words& value, const Words& badge) const;
    void followHardware(const SensorRow& controller, const SensorRow& sensors, const SensorRow& processor,
                        const SensorRow& power);
};

}  // namespace kestro
