#include "core/model/menubar_enumerations.h"
#include "fuzz/round_trip.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Stored bytes either do not decode, or yield a list of modules that survives a round trip.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestro;
    using Modules = std::vector<MenubarModuleType>;
    require(!decodeTwice<Modules>(std::string(reinterpret_cast<const char*>(data), size)));
    decodeTwice<Modules>(PreferenceData(data, data + size));
    return 0;
}
