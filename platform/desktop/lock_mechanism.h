#pragma once

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestro {

/// The mechanisms that keep a session from idling. None of them outlives this process, not even after SIGKILL:
/// - GNOME's session manager, also MATE's and Cinnamon's, watches our connection to the bus (gsm-inhibitor.c);
/// - so does KDE's policy agent (powerdevilpolicyagent.cpp, onServiceUnregistered);
/// - so does Xfce's power manager (xfpm-inhibit.c, xfpm_inhibit_connection_lost_cb);
/// - the portal closes the requests of a connection that ended (xdg-desktop-portal, close_requests_for_sender);
/// - a screen saver has to drop the lock when we leave the bus (Idle Inhibition Service specification, chapter 3);
/// - logind's lock is a descriptor, which the kernel closes (org.freedesktop.login1(5), Inhibit());
/// - the X server resumes its timers when a client's connection ends (MIT-SCREEN-SAVER protocol, version 1.1);
/// - a Wayland compositor destroys the objects of a client whose connection ends, the inhibitor among them.
enum class LockMechanism : std::uint8_t {
    gnomeSessionManager,
    kdePolicyAgent,
    freedesktopPowerManagement,
    portalIdle,
    portalSuspend,
    screenSaver,
    logindIdle,
    logindSleep,
    x11ScreenSaver,
    waylandIdleInhibitor,
};

inline constexpr std::size_t lockMechanismCount = 10;

/// Every mechanism, in the order of the enumeration.
std::vector<LockMechanism> allLockMechanisms();

/// What to keep awake. `displayAndSystem` false: the system only.
struct LockWish {
    bool displayAndSystem = true;
    QString reason;
};

/// What decides which mechanisms count.
struct LockSession {
    bool isSandboxed = false;
    bool isWayland = false;
};

/// The mechanisms that together keep this desktop awake. `isUsable`: offered by the session, and not refused.
/// - One power daemon of the session decides about idle suspend, so the first that is usable counts.
/// - A separate screen saver service is asked as well, unless GNOME or KDE provide it.
/// - logind's idle lock prevents only logind's idle action. From systemd 257 on, its sleep lock also blocks the
///   user's own suspend, so for the display it only replaces a missing power daemon.
/// - The X server blanks the screen whatever the services hold, unless its timers are suspended. Inside a Wayland
///   session it never does.
/// - On Wayland, GNOME and KDE watch for idleness themselves. Elsewhere a separate daemon does, to which the
///   compositor reports none while it has an inhibitor.
/// - The portal counts inside a sandbox only, where the services are out of reach. Outside, it answers "granted"
///   even where its backend inhibits nothing. Backends other than GNOME's and KDE's refuse a request that includes
///   suspend, so idle and suspend are two requests.
std::vector<LockMechanism> plannedMechanisms(const LockWish& wish, const LockSession& session,
                                             const std::function<bool(LockMechanism)>& isUsable);

/// Whether these locks keep awake what is wished for. On Wayland, logind's are not known to keep the display on:
/// GNOME and KDE ignore them, and of the other idle daemons only some ask for them.
bool fulfils(const std::vector<LockMechanism>& held, const LockWish& wish, const LockSession& session);

/// The name that the user sees. The session manager and the Wayland compositor are named after `desktop`, the
/// value of XDG_CURRENT_DESKTOP.
std::string holderName(LockMechanism mechanism, const QString& desktop);

/// Whether a mechanism belongs to the portal.
bool isPortal(LockMechanism mechanism);

/// The well-known name of the mechanism's service; empty: it is not on a bus.
QString serviceName(LockMechanism mechanism);

/// True for logind; the other services are on the session bus.
bool isOnSystemBus(LockMechanism mechanism);

/// A lock that a service granted: its cookie, its request object, or its descriptor.
using GrantedLock = std::variant<std::uint32_t, QDBusObjectPath, QDBusUnixFileDescriptor>;

/// The call that asks the connection `service` for a lock, without starting a service.
QDBusMessage lockCall(LockMechanism mechanism, const QString& service, const LockWish& wish);

/// The lock in a reply; nullopt: refused, or the reply contains none.
std::optional<GrantedLock> lockFromReply(LockMechanism mechanism, const QDBusMessage& reply);

/// The call that releases a lock. It is addressed to the connection that granted the lock, so that it never
/// reaches a later owner of the service's name. nullopt: dropping the lock is enough.
std::optional<QDBusMessage> releaseCall(LockMechanism mechanism, const GrantedLock& lock,
                                        const QString& grantedBy);

/// The call that asks whether a granted lock is in effect; nullopt: the mechanism cannot be asked.
std::optional<QDBusMessage> proofCall(LockMechanism mechanism, const QString& service, const LockWish& wish);

/// Whether the lock is in effect; false also without a reply in time. nullopt: the service does not know the
/// question.
std::optional<bool> proofFromReply(LockMechanism mechanism, const QDBusMessage& reply, const LockWish& wish);

/// Whether a lock takes effect only some time after its grant: KDE's agent waits five seconds.
bool isEnforcedLater(LockMechanism mechanism);

}  // namespace kestro
