#pragma once

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <variant>

namespace kestro {

/// The services that keep a session from idling, best first. Each releases its lock when our connection to the
/// bus ends, however the process ends; sources:
/// - GNOME's session manager, also MATE's and Cinnamon's: gsm-manager.c, remove_inhibitors_for_connection;
/// - KDE's policy agent: powerdevilpolicyagent.cpp, PolicyAgent::onServiceUnregistered;
/// - Xfce's power manager: xfpm-inhibit.c, xfpm_inhibit_connection_lost_cb;
/// - the portal: xdg-desktop-portal, request.c, close_requests_for_sender;
/// - the screen saver: freedesktop.org, Idle Inhibition Service, chapter 3, on leaving the session bus;
/// - logind, whose lock is a file descriptor that the kernel closes: org.freedesktop.login1(5), Inhibit().
enum class InhibitionBackend : std::uint8_t {
    gnomeSessionManager,
    kdePolicyAgent,
    freedesktopPowerManagement,
    portal,
    screenSaver,
    logind,
};

inline constexpr std::size_t inhibitionBackendCount = 6;

/// What to keep awake. `displayAndSystem` false: the system only.
struct InhibitionWish {
    bool displayAndSystem = true;
    QString reason;
};

/// A lock that a backend granted: its cookie, its request object, or its descriptor.
using InhibitionLock = std::variant<std::uint32_t, QDBusObjectPath, QDBusUnixFileDescriptor>;

/// The well-known name of a backend.
QString serviceName(InhibitionBackend backend);

/// True for the backend on the system bus; the others are on the session bus.
bool isOnSystemBus(InhibitionBackend backend);

/// The order in which backends are asked. `freedesktopPowerManagement` inhibits display and system together, so
/// where it is present, a wish for the system alone goes to logind first.
std::array<InhibitionBackend, inhibitionBackendCount> backendOrder(bool displayAndSystem,
                                                                   bool hasFreedesktopPowerManagement);

/// Whether `backend` supports this wish.
bool canInhibit(InhibitionBackend backend, const InhibitionWish& wish);

/// The call that asks `backend`, at the connection `service`, for a lock without starting a service. `weakest`
/// asks logind for a mode that a user's own command overrides; daemons before version 257 refuse it.
QDBusMessage inhibitCall(InhibitionBackend backend, const QString& service, const InhibitionWish& wish,
                         bool weakest);

/// The lock in a reply; nullopt: refused, or the reply contains none.
std::optional<InhibitionLock> lockFromReply(InhibitionBackend backend, const QDBusMessage& reply);

/// The call that releases a lock. It is addressed to the connection that granted the lock, so that it never
/// reaches a later owner of the backend's name. nullopt: dropping the lock is enough.
std::optional<QDBusMessage> releaseCall(InhibitionBackend backend, const InhibitionLock& lock,
                                        const QString& grantedBy);

}  // namespace kestro
