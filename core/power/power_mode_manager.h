#pragma once

#include "core/base/lifetime.h"
#include "core/base/published.h"
#include "core/model/system_power_mode.h"

#include <memory>

namespace kestro {

class RunLoopTimer;
struct Platform;

/// Shows and changes the system-wide power mode. Polls it every five seconds in the background. A switch also runs
/// in the background and is followed by a read, so the published value is what the system actually did. Published
/// values change on the main thread only.
class PowerModeManager {
public:
    explicit PowerModeManager(const Platform& platform);
    ~PowerModeManager();
    PowerModeManager(const PowerModeManager&) = delete;
    PowerModeManager& operator=(const PowerModeManager&) = delete;

    /// The process-wide manager on the current platform, created on first use.
    static PowerModeManager& shared();

    /// The mode last read; `balanced` until the first read completes.
    Published<SystemPowerMode, PowerModeManager> currentMode;
    Published<bool, PowerModeManager> supportsHighPowerMode;

    /// Asks the system to switch; returns at once and never changes `currentMode` itself.
    void setPowerMode(SystemPowerMode mode);

    /// Rereads the mode in the background; the last read to finish wins.
    void refreshPowerMode();

private:
    const Platform& platform_;
    std::unique_ptr<RunLoopTimer> timer_;
    Lifetime lifetime_;
};

}  // namespace kestro
