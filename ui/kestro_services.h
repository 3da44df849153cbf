#pragma once

namespace kestro {

class FanControlManager;
class KeepAwakeManager;
class PowerModeManager;
class PowerStatus;
class TelemetryEngine;
class UserSettings;

/// The objects that every surface observes and drives; they outlive every view.
struct KestroServices {
    TelemetryEngine& engine;
    UserSettings& settings;
    FanControlManager& fanManager;
    KeepAwakeManager& keepAwake;
    PowerModeManager& powerManager;
    PowerStatus& powerStatus;
};

}  // namespace kestro
