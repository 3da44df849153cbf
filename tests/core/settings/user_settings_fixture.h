#pragma once

#include "core/settings/user_settings.h"
#include "tests/core/settings/recording_user_defaults.h"

#include <memory>

namespace kestro {

/// A store over preferences that a test fills before creating it.
struct UserSettingsFixture {
    RecordingUserDefaults defaults;
    std::unique_ptr<UserSettings> made;

    UserSettings& settings() {
        if (!made) {
            made = std::make_unique<UserSettings>(defaults);
        }
        return *made;
    }
};

}  // namespace kestro
