#pragma once

#include "core/settings/preference_codec.h"
#include "fuzz/requirement.h"

#include <optional>

namespace kestro {

/// Decodes what is stored. A value that decodes survives a round trip.
template <typename T>
std::optional<T> decodeTwice(const PreferenceValue& stored) {
    auto value = PreferenceCodec<T>::decode(stored);
    if (value) {
        const auto again = PreferenceCodec<T>::encode(*value);
        require(again && PreferenceCodec<T>::decode(*again) == value);
    }
    return value;
}

}  // namespace kestro
