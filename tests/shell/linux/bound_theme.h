#pragma once

#include "core/settings/user_settings.h"
#include "platform/simulated/simulated_user_defaults.h"
#include "ui/theme/kestro_theme.h"

namespace kestro {

/// Gives the theme a settings store for its own lifetime.
class BoundTheme {
public:
    BoundTheme() { KestroTheme::bind(&settings_); }
    ~BoundTheme() { KestroTheme::bind(nullptr); }
    BoundTheme(const BoundTheme&) = delete;
    BoundTheme& operator=(const BoundTheme&) = delete;

private:
    SimulatedUserDefaults defaults_;
    UserSettings settings_{defaults_};
};

}  // namespace kestro
