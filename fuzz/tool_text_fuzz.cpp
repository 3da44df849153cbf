#include "core/base/text.h"
#include "core/power/power_mode_report.h"
#include "core/telemetry/process_reader.h"
#include "fuzz/requirement.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestro {
namespace {

void readTools(std::string_view text) {
    const bool isText = isValidUtf8(text);
    require(isText || powerModeOfReport(text) == SystemPowerMode::balanced);
    constexpr std::int64_t limit = 5;
    const auto processes = processesOfListing(text, limit);
    require(std::ssize(processes) <= limit);
    for (const auto& process : processes) {
        require(!process.name.empty() && std::isfinite(process.cpuPercent) && std::isfinite(process.memoryMB));
        require(!isText || (isValidUtf8(process.name) && isValidUtf8(process.fullCommand)));
    }
}

}  // namespace
}  // namespace kestro

// What command-line tools print.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readTools(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
