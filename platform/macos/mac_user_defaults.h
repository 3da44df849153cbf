#pragma once

#include "core/platform/user_defaults.h"

namespace kestro {

/// The preferences of this application and user, from CFPreferences. Main thread. Values of other kinds than the
/// port has, such as dates, read as missing. A value that cannot be stored, because its text is not UTF-8, is
/// dropped.
class MacUserDefaults final : public UserDefaults {
public:
    MacUserDefaults() = default;

    /// Flushes.
    ~MacUserDefaults() override;
    MacUserDefaults(const MacUserDefaults&) = delete;
    MacUserDefaults& operator=(const MacUserDefaults&) = delete;

    std::optional<PreferenceValue> object(std::string_view key) const override;
    void set(std::string_view key, PreferenceValue value) override;

    /// Hands everything over to the system's preferences service, which also outlives a crash.
    void flush();
};

}  // namespace kestro
