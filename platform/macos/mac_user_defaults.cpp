#include "platform/macos/mac_user_defaults.h"

#include "platform/macos/cf_values.h"

#include <type_traits>
#include <utility>

namespace kestro {

MacUserDefaults::~MacUserDefaults() {
    flush();
}

std::optional<PreferenceValue> MacUserDefaults::object(std::string_view key) const {
    const auto name = makeString(key);
    if (!name) {
        return std::nullopt;
    }
    const CFOwned<CFTypeRef> stored(CFPreferencesCopyAppValue(name.get(), kCFPreferencesCurrentApplication));
    CFValue value = valueOf(stored.get());
    std::optional<PreferenceValue> preference;
    std::visit(
        [&preference](auto& kind) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(kind)>, std::monostate>) {
                preference.emplace(std::move(kind));
            }
        },
        value);
    return preference;
}

void MacUserDefaults::set(std::string_view key, PreferenceValue value) {
    const auto name = makeString(key);
    const auto object = std::visit(
        [](auto&& kind) { return makeObject(CFValue(std::forward<decltype(kind)>(kind))); }, std::move(value));
    if (name && object) {
        CFPreferencesSetAppValue(name.get(), object.get(), kCFPreferencesCurrentApplication);
        flushAtEndOfTurn();
    }
}

void MacUserDefaults::flushAtEndOfTurn() {
    if (std::exchange(isFlushDue_, true)) {
        return;
    }
    runLoop_.post([this, life = lifetime_.watch()] {
        if (!life.expired() && isFlushDue_) {
            flush();
        }
    });
}

void MacUserDefaults::flush() {
    isFlushDue_ = false;
    CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

}  // namespace kestro
