#include "platform/desktop/overflowing_numbers.h"
#include "platform/desktop/preference_json.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// Arbitrary bytes are either rejected or parsed, and what was parsed survives a round trip.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto document = kestro::parsePreferenceJson(text);
    if (!document || !document->is_object()) {
        return 0;
    }
    const auto written = kestro::parsePreferenceJson(kestro::dumpWithOverflowingNumbers(*document, -1));
    if (!written || *written != *document) {
        std::abort();
    }
    for (const auto& [key, json] : document->items()) {
        const auto value = kestro::decodePreference(json);
        if (!value) {
            continue;
        }
        const auto stored = kestro::encodePreference(*value);
        const auto again = kestro::decodePreference(stored);
        if (!again || kestro::encodePreference(*again) != stored) {
            std::abort();
        }
    }
    return 0;
}
