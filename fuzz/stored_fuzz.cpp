#include "core/base/enumeration.h"
#include "core/model/keep_awake_types.h"
#include "core/model/settings_enumerations.h"
#include "fuzz/round_trip.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kestro {
namespace {

template <ClosedEnumeration E>
void readEnumeration(const PreferenceValue& stored, const std::string& text) {
    if (fromRawValue<E>(text)) {
        require(decodeTwice<E>(stored).has_value());
    }
}

void readPreference(const PreferenceValue& stored) {
    decodeTwice<bool>(stored);
    decodeTwice<std::int64_t>(stored);
    decodeTwice<double>(stored);
    // Enumerations differ only in the texts that they know, and each would parse the JSON again.
    if (const auto text = textOfJsonStringData(stored)) {
        readEnumeration<SettingsTab>(stored, *text);
        readEnumeration<MenubarDelimiter>(stored, *text);
        readEnumeration<KeepAwakeDuration>(stored, *text);
    }
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readPreference(kestro::PreferenceData(data, data + size));
    kestro::readPreference(std::string(data, data + size));
    return 0;
}
