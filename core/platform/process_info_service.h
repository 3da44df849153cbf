#pragma once

#include <cstdint>
#include <string>

namespace kestro {

/// The running system's name and version. The name depends on the platform ("macOS" on a Mac, NAME from os-release
/// on Linux), so that no system poses as another.
struct OperatingSystemVersion {
    std::string productName;
    std::int64_t major = 0;
    std::int64_t minor = 0;
    std::int64_t patch = 0;
};

/// The process-information service. Main thread; never fails.
class ProcessInfoService {
public:
    virtual ~ProcessInfoService() = default;

    /// Bytes of physical memory available to the system.
    virtual std::uint64_t physicalMemory() = 0;

    /// 0 nominal, 1 fair, 2 serious, 3 critical.
    virtual std::int64_t thermalState() = 0;

    virtual OperatingSystemVersion operatingSystemVersion() = 0;
};

}  // namespace kestro
