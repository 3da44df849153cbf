#pragma once

#include <memory>

#include "core/base/lifetime.h"
#include "core/base/published.h"
#include "core/power/system_power_mode.h"

namespace kestro {

class RunLoopTimer;
struct Platform;

/// Shows and changes the system-wide power mode. Reads it every five seconds in the background; a switch
/// runs in the background too and is followed by a read, so what is published is what the system did.
/// Published values change on the main thread only.
class PowerModeManager {
public:
    explicit PowerModeManager(const Platform& platform);
    ~PowerModeManager();
    PowerModeManager(const PowerModeManager&) = delete;
    PowerModeManager& operator=(const PowerModeManager&) = delete;

    /// The process-wide manager on the current platform, made at first use.
    static PowerModeManager& shared();

    /// The mode last read; `balanced` until the first read has ended.
    Published<SystemPowerMode, PowerModeManager> currentMode;
    Published<bool, PowerModeManager> supportsHighPowerMode;

    /// Asks the system to switch; returns at once and never changes `currentMode` by itself.
    void setPowerMode(SystemPowerMode mode);

    /// Reads the mode again in the background; the read that ends last is kept.
    void refreshPowerMode();

private:
    const Platform& platform_;
    std::unique_ptr<RunLoopTimer> timer_;
    Lifetime lifetime_;
};

}  // namespace kestro
