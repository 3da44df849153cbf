#pragma once

#include "core/model/fan_curve.h"
#include "ui/fancurve/fan_curve_canvas_view.h"
#include "ui/settings/settings_pane.h"

#include <vector>

namespace kestro {

class TextLabel;
class ToggleSwitch;
struct FanTelemetry;

/// Index of the fan whose curve the studio edits: 1 when the right fan is selected and the fans are not linked,
/// else 0.
std::int64_t editedFan(const KestroServices& services);

/// That fan's curve.
const FanCurveConfig& activeEditingConfig(const KestroServices& services);

/// The fans as last measured; before the first sample, as listed by the fan control manager.
const std::vector<FanTelemetry>& liveFans(const KestroServices& services);

/// Whether a curve matches a preset: sensor, shape, both temperatures and the ceiling.
bool isInForce(CurvePreset preset, const FanCurveConfig& config);

/// Selects a fan and edits its curve over a live chart. Every edit goes through the fan control manager, which
/// links the fans and engages the custom curves.
class FanCurveStudio : public SettingsPane {
    Q_OBJECT

public:
    explicit FanCurveStudio(const KestroServices& services);

private:
    template <typename Change>
    void edit(Change change);
    template <typename Show>
    void followCurve(Show show);

    QWidget* heading();
    QWidget* fanSelector();
    QWidget* presets();
    QWidget* chart();
    template <ClosedEnumeration E, std::size_t N>
    QWidget* options(const std::array<E, N>& cases, E FanCurveConfig::*field);
    QWidget* thresholds();
    QWidget* smoothing();
    QWidget* ceiling();
    FanCurveReading reading() const;
};

}  // namespace kestro
