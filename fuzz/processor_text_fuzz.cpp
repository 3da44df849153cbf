#include "fuzz/requirement.h"
#include "platform/linux/machine/cpu_topology.h"
#include "platform/linux/machine/proc_stat.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

void readProcessors(std::string_view text) {
    std::vector<CoreTicks> cores;
    parseProcStatCores(text, cores);
    require(cores.size() <= coreLimit);
    require(parseCoreList(text).size() <= coreLimit);
    require(parseBootTime(text).value_or(1) > 0);
    require(parseUptime(text).value_or(0) >= 0);
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readProcessors(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
