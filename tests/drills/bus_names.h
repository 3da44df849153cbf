#pragma once

#include "tests/desktop/desktop_session.h"

#include <array>
#include <string_view>

/// The names on the buses that a hostile program can take or use.
namespace kestro::drills {

using Bus = DesktopSession::Bus;

/// A service that Kestro uses, and the bus on which it is.
struct ServiceName {
    std::string_view name;
    Bus bus;
};

inline constexpr std::array serviceNames{ServiceName{"org.freedesktop.portal.Desktop", Bus::session},
                                         ServiceName{"org.gnome.SessionManager", Bus::session},
                                         ServiceName{"org.kde.Solid.PowerManagement.PolicyAgent", Bus::session},
                                         ServiceName{"org.freedesktop.PowerManagement", Bus::session},
                                         ServiceName{"org.freedesktop.ScreenSaver", Bus::session},
                                         ServiceName{"org.xfce.Xfconf", Bus::session},
                                         ServiceName{"org.freedesktop.login1", Bus::system},
                                         ServiceName{"net.hadess.PowerProfiles", Bus::system},
                                         ServiceName{"org.freedesktop.UPower.PowerProfiles", Bus::system}};

/// Whoever sends such a signal.
inline constexpr std::string_view anyone;
inline constexpr std::string_view watcher = "org.kde.StatusNotifierWatcher";

struct SignalName {
    std::string_view sender;  ///< whose signal it is
    const char* path;
    const char* interface;
    const char* member;
};

inline constexpr SignalName hostRegistered{watcher, "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
                                           "StatusNotifierHostRegistered"};
inline constexpr SignalName hostUnregistered{watcher, "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
                                             "StatusNotifierHostUnregistered"};

/// Everything that Kestro listens to.
inline constexpr std::array signalNames{
    SignalName{anyone, "/kestro/notify", "kestro.notify", "showSettings"},
    SignalName{anyone, "/kestro/notify", "kestro.notify", "togglePopover"},
    SignalName{anyone, "/kestro/notify", "kestro.notify", "showDashboard"},
    hostRegistered,
    hostUnregistered,
    SignalName{"org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
               "org.freedesktop.portal.Settings", "SettingChanged"},
    SignalName{"org.freedesktop.portal.Desktop", "/request", "org.freedesktop.portal.Request", "Response"},
    SignalName{"org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
               "PrepareForSleep"},
    SignalName{"net.hadess.PowerProfiles", "/net/hadess/PowerProfiles", "org.freedesktop.DBus.Properties",
               "PropertiesChanged"},
    SignalName{"org.freedesktop.UPower.PowerProfiles", "/org/freedesktop/UPower/PowerProfiles",
               "org.freedesktop.DBus.Properties", "PropertiesChanged"},
    SignalName{"org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf", "PropertyChanged"}};

/// What hosts call.
inline constexpr auto menuInterface = "com.canonical.dbusmenu";
inline constexpr std::array menuMethods{"GetLayout",  "GetGroupProperties", "GetProperty",     "Event",
                                        "EventGroup", "AboutToShow",        "AboutToShowGroup"};
inline constexpr std::array itemMethods{"Activate", "SecondaryActivate", "ContextMenu", "Scroll",
                                        "ProvideXdgActivationToken"};

}  // namespace kestro::drills
