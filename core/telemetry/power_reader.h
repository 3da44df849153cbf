#pragma once

#include "core/telemetry/power_telemetry.h"

namespace kestro {

class PowerSources;

/// Reads the first power source that has a description. Stateless. Main thread.
class PowerReader {
public:
    explicit PowerReader(PowerSources& sources) : sources_(sources) {}
    PowerReader(const PowerReader&) = delete;
    PowerReader& operator=(const PowerReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static PowerReader& shared();

    /// Without any description: external power and no battery. A key that is missing or of the wrong type takes
    /// its default.
    PowerTelemetry read();

private:
    PowerSources& sources_;
};

}  // namespace kestro
