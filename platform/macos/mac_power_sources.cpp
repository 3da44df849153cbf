#include "platform/macos/mac_power_sources.h"

#include "platform/macos/cf_values.h"

#include <IOKit/ps/IOPowerSources.h>

#include <string_view>
#include <utility>

namespace kestro {

namespace {

constexpr std::string_view keysInUse[] = {"Is Charging",  "Power Source State", "Current Capacity",
                                          "Max Capacity", "BatteryHealth",      "Time to Empty"};

std::optional<PowerSourceDescription> descriptionOf(CFDictionaryRef dictionary) {
    if (dictionary == nullptr || CFGetTypeID(dictionary) != CFDictionaryGetTypeID()) {
        return std::nullopt;
    }
    PowerSourceDescription description;
    for (const auto key : keysInUse) {
        const CFValue value = valueOf(valueUnder(dictionary, key));
        if (const auto* flag = std::get_if<bool>(&value)) {
            description.emplace(key, *flag);
        } else if (const auto* number = std::get_if<std::int64_t>(&value)) {
            description.emplace(key, *number);
        } else if (const auto* text = std::get_if<std::string>(&value)) {
            description.emplace(key, *text);
        }
    }
    return description;
}

}  // namespace

std::optional<std::vector<std::optional<PowerSourceDescription>>> MacPowerSources::copyDescriptions() {
    const CFOwned<CFTypeRef> information(IOPSCopyPowerSourcesInfo());
    if (!information) {
        return std::nullopt;
    }
    const CFOwned<CFArrayRef> sources(IOPSCopyPowerSourcesList(information.get()));
    if (!sources || CFGetTypeID(sources.get()) != CFArrayGetTypeID()) {
        return std::nullopt;
    }
    std::vector<std::optional<PowerSourceDescription>> descriptions;
    const CFIndex count = CFArrayGetCount(sources.get());
    for (CFIndex index = 0; index < count; ++index) {
        const CFTypeRef source = CFArrayGetValueAtIndex(sources.get(), index);
        descriptions.push_back(descriptionOf(IOPSGetPowerSourceDescription(information.get(), source)));
    }
    return descriptions;
}

}  // namespace kestro
