#pragma once

#include <string_view>

namespace kestro::notification_names {

/// The system-wide notifications that this program handles; any process of the user may post them.

inline constexpr std::string_view togglePopover = "kestro.notify.togglePopover";
inline constexpr std::string_view showDashboard = "kestro.notify.showDashboard";
inline constexpr std::string_view showSettings = "kestro.notify.showSettings";

/// Optional user-info entry of `showSettings`: the label of the settings tab to select.
inline constexpr std::string_view tabKey = "tab";

}  // namespace kestro::notification_names
