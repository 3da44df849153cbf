#include "core/base/text.h"
#include "fuzz/requirement.h"
#include "platform/linux/machine/machine_identity.h"
#include "platform/linux/machine/os_release.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestro {
namespace {

void readIdentity(std::string_view text) {
    const auto brand = parseProcessorBrand(text);
    require(!brand || isValidUtf8(*brand));
    appleChipName(text);
    const auto release = parseOsRelease(text);
    require(!release.name || displayText(*release.name) == release.name);
    parseVersionNumbers(text);
    const auto shown = displayText(text);
    require(!shown || (isValidUtf8(*shown) && displayText(*shown) == shown));
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readIdentity(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
