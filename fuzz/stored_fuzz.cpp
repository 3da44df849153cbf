#include "core/base/text.h"
#include "core/model/keep_awake_types.h"
#include "core/model/settings_enumerations.h"
#include "fuzz/round_trip.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestro {
namespace {

void readPreference(const PreferenceValue& stored, std::string_view text) {
    decodeTwice<bool>(stored);
    decodeTwice<std::int64_t>(stored);
    decodeTwice<double>(stored);
    decodeTwice<SettingsTab>(stored);
    // Enumerations differ only in the texts that they know, and parse JSON once each.
    if (trimmed(text).starts_with('"')) {
        decodeTwice<MenubarDelimiter>(stored);
        decodeTwice<KeepAwakeDuration>(stored);
    }
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    kestro::readPreference(kestro::PreferenceData(data, data + size), text);
    kestro::readPreference(std::string(text), text);
    return 0;
}
