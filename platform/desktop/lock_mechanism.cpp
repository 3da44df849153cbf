#include "platform/desktop/lock_mechanism.h"

#include <QDBusArgument>
#include <QVariantMap>

#include <algorithm>
#include <array>
#include <utility>

namespace kestro {

namespace {

using enum LockMechanism;

struct MechanismRow {
    LockMechanism mechanism;
    const char* holder;
    const char* service;  // nullptr: not a service
    const char* path;
    const char* interface;
    const char* acquire;
    const char* release;  // nullptr: released by other means
    const char* proof;    // nullptr: cannot be asked
    std::uint32_t displayFlags;
    std::uint32_t systemFlags;
};

// Flags of org.gnome.SessionManager and the portal: 8 idle, 4 suspend. Display and system need both: GNOME ignores
// an idle inhibitor while the screen is locked, and then suspends (gsd-power-manager.c, idle_configure).
// PolicyAgent: 4 screen settings, which implies 1, interrupting the session.
constexpr std::array<MechanismRow, lockMechanismCount> rows{{
    {gnomeSessionManager, "GNOME", "org.gnome.SessionManager", "/org/gnome/SessionManager",
     "org.gnome.SessionManager", "Inhibit", "Uninhibit", "IsInhibited", 8 | 4, 4},
    {kdePolicyAgent, "KDE", "org.kde.Solid.PowerManagement.PolicyAgent",
     "/org/kde/Solid/PowerManagement/PolicyAgent", "org.kde.Solid.PowerManagement.PolicyAgent", "AddInhibition",
     "ReleaseInhibition", "HasInhibition", 4, 1},
    {freedesktopPowerManagement, "Xfce", "org.freedesktop.PowerManagement",
     "/org/freedesktop/PowerManagement/Inhibit", "org.freedesktop.PowerManagement.Inhibit", "Inhibit", "UnInhibit",
     "HasInhibit", 0, 0},
    {portalIdle, "portal", "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
     "org.freedesktop.portal.Inhibit", "Inhibit", nullptr, nullptr, 8, 8},
    {portalSuspend, "portal", "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
     "org.freedesktop.portal.Inhibit", "Inhibit", nullptr, nullptr, 4, 4},
    {screenSaver, "screen saver", "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
     "org.freedesktop.ScreenSaver", "Inhibit", "UnInhibit", nullptr, 0, 0},
    {logindIdle, "logind", "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
     "Inhibit", nullptr, "ListInhibitors", 0, 0},
    {logindSleep, "logind", "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
     "Inhibit", nullptr, "ListInhibitors", 0, 0},
    {x11ScreenSaver, "X11", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0},
    {waylandIdleInhibitor, "Wayland compositor", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0},
}};

struct NamedDesktop {
    LockMechanism mechanism;
    const char* word;  // in XDG_CURRENT_DESKTOP
    const char* holder;
};

/// Desktops whose session manager has GNOME's interface, and compositors.
constexpr std::array<NamedDesktop, 10> namedDesktops{{
    {gnomeSessionManager, "MATE", "MATE"},
    {gnomeSessionManager, "X-Cinnamon", "Cinnamon"},
    {gnomeSessionManager, "Budgie", "Budgie"},
    {gnomeSessionManager, "Pantheon", "Pantheon"},
    {waylandIdleInhibitor, "sway", "Sway"},
    {waylandIdleInhibitor, "Hyprland", "Hyprland"},
    {waylandIdleInhibitor, "river", "River"},
    {waylandIdleInhibitor, "Wayfire", "Wayfire"},
    {waylandIdleInhibitor, "labwc", "Labwc"},
    {waylandIdleInhibitor, "niri", "Niri"},
}};

constexpr auto applicationName = "Kestro";

const MechanismRow& rowOf(LockMechanism mechanism) {
    return rows[static_cast<std::size_t>(mechanism)];
}

bool isLogind(LockMechanism mechanism) {
    return mechanism == logindIdle || mechanism == logindSleep;
}

QString logindWhat(LockMechanism mechanism) {
    return mechanism == logindIdle ? QStringLiteral("idle") : QStringLiteral("sleep");
}

std::uint32_t flagsOf(LockMechanism mechanism, const LockWish& wish) {
    return wish.displayAndSystem ? rowOf(mechanism).displayFlags : rowOf(mechanism).systemFlags;
}

QDBusMessage call(const QString& service, const QString& path, const char* interface, const char* member) {
    auto message =
        QDBusMessage::createMethodCall(service, path, QString::fromLatin1(interface), QString::fromLatin1(member));
    message.setAutoStartService(false);
    return message;
}

/// Every request needs a unique name, or the portal merges them.
QString nextHandleToken() {
    static int count = 0;
    return QStringLiteral("kestro%1").arg(++count);
}

/// Whether the service was silent, or has left the bus.
bool isWithoutAnswer(const QDBusMessage& reply) {
    static const QStringList errors{QStringLiteral("org.freedesktop.DBus.Error.NoReply"),
                                    QStringLiteral("org.freedesktop.DBus.Error.Timeout"),
                                    QStringLiteral("org.freedesktop.DBus.Error.TimedOut"),
                                    QStringLiteral("org.freedesktop.DBus.Error.Disconnected"),
                                    QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner"),
                                    QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown")};
    return errors.contains(reply.errorName());
}

/// Whether logind's list, an array of (what, who, why, mode, user, process), contains our lock.
bool isListed(const QDBusMessage& reply, const QString& what, const LockWish& wish) {
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    bool found = false;
    list.beginArray();
    while (!list.atEnd()) {
        std::array<QString, 4> texts;
        std::uint32_t user = 0;
        std::uint32_t process = 0;
        list.beginStructure();
        for (auto& text : texts) {
            list >> text;
        }
        list >> user >> process;
        list.endStructure();
        found = found || (texts[0] == what && texts[1] == QLatin1String(applicationName) &&
                          texts[2] == wish.reason && texts[3] == QLatin1String("block"));
    }
    list.endArray();
    return found;
}

}  // namespace

std::vector<LockMechanism> allLockMechanisms() {
    std::vector<LockMechanism> all;
    for (const auto& row : rows) {
        all.push_back(row.mechanism);
    }
    return all;
}

std::vector<LockMechanism> plannedMechanisms(const LockWish& wish, const LockSession& session,
                                             const std::function<bool(LockMechanism)>& isUsable) {
    std::vector<LockMechanism> plan;
    const auto add = [&](LockMechanism mechanism) {
        const bool isAdded = isUsable(mechanism);
        if (isAdded) {
            plan.push_back(mechanism);
        }
        return isAdded;
    };
    bool isWholeDesktop = false;
    if (session.isSandboxed) {
        add(portalSuspend);
        if (wish.displayAndSystem) {
            add(portalIdle);
        }
    } else {
        isWholeDesktop = add(gnomeSessionManager) || add(kdePolicyAgent);
        const bool hasPowerDaemon = isWholeDesktop || add(freedesktopPowerManagement);
        if (wish.displayAndSystem && !isWholeDesktop) {
            add(screenSaver);
        }
        if (wish.displayAndSystem) {
            add(logindIdle);
        }
        if (!wish.displayAndSystem || !hasPowerDaemon) {
            add(logindSleep);
        }
    }
    if (wish.displayAndSystem && !session.isWayland) {
        add(x11ScreenSaver);
    }
    if (wish.displayAndSystem && session.isWayland && !isWholeDesktop) {
        add(waylandIdleInhibitor);
    }
    return plan;
}

bool fulfils(const std::vector<LockMechanism>& held, const LockWish& wish, const LockSession& session) {
    const bool isLogindEnough = !wish.displayAndSystem || !session.isWayland;
    return std::ranges::any_of(
        held, [isLogindEnough](LockMechanism mechanism) { return isLogindEnough || !isLogind(mechanism); });
}

std::string holderName(LockMechanism mechanism, const QString& desktop) {
    const auto words = desktop.split(QLatin1Char(':'));
    const auto* const found = std::ranges::find_if(namedDesktops, [mechanism, &words](const NamedDesktop& named) {
        return named.mechanism == mechanism && words.contains(QLatin1String(named.word));
    });
    return found != namedDesktops.end() ? found->holder : rowOf(mechanism).holder;
}

bool isPortal(LockMechanism mechanism) {
    return mechanism == portalIdle || mechanism == portalSuspend;
}

QString serviceName(LockMechanism mechanism) {
    return QString::fromLatin1(rowOf(mechanism).service);
}

bool isOnSystemBus(LockMechanism mechanism) {
    return isLogind(mechanism);
}

QDBusMessage lockCall(LockMechanism mechanism, const QString& service, const LockWish& wish) {
    const auto& row = rowOf(mechanism);
    const QString application = QString::fromLatin1(applicationName);
    const std::uint32_t flags = flagsOf(mechanism, wish);
    auto message = call(service, QString::fromLatin1(row.path), row.interface, row.acquire);
    switch (mechanism) {
        case gnomeSessionManager:
            return message << application << std::uint32_t{0} << wish.reason << flags;
        case kdePolicyAgent:
            return message << flags << application << wish.reason;
        case portalIdle:
        case portalSuspend:
            return message << QString() << flags
                           << QVariantMap{{QStringLiteral("reason"), wish.reason},
                                          {QStringLiteral("handle_token"), nextHandleToken()}};
        case freedesktopPowerManagement:
        case screenSaver:
            return message << application << wish.reason;
        case logindIdle:
        case logindSleep:
            return message << logindWhat(mechanism) << application << wish.reason << QStringLiteral("block");
        case x11ScreenSaver:
        case waylandIdleInhibitor:
            break;
    }
    return message;
}

std::optional<GrantedLock> lockFromReply(LockMechanism mechanism, const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return std::nullopt;
    }
    const QVariant first = reply.arguments().constFirst();
    if (isLogind(mechanism)) {
        const auto descriptor = first.value<QDBusUnixFileDescriptor>();
        return descriptor.isValid() ? std::optional<GrantedLock>(descriptor) : std::nullopt;
    }
    if (isPortal(mechanism)) {
        const auto path = first.value<QDBusObjectPath>();
        return path.path().isEmpty() ? std::nullopt : std::optional<GrantedLock>(path);
    }
    return first.metaType().id() == QMetaType::UInt ? std::optional<GrantedLock>(first.toUInt()) : std::nullopt;
}

std::optional<QDBusMessage> releaseCall(LockMechanism mechanism, const GrantedLock& lock,
                                        const QString& grantedBy) {
    const auto& row = rowOf(mechanism);
    if (const auto* cookie = std::get_if<std::uint32_t>(&lock)) {
        return call(grantedBy, QString::fromLatin1(row.path), row.interface, row.release) << *cookie;
    }
    if (const auto* request = std::get_if<QDBusObjectPath>(&lock)) {
        return call(grantedBy, request->path(), "org.freedesktop.portal.Request", "Close");
    }
    return std::nullopt;
}

std::optional<QDBusMessage> proofCall(LockMechanism mechanism, const QString& service, const LockWish& wish) {
    const auto& row = rowOf(mechanism);
    if (row.proof == nullptr) {
        return std::nullopt;
    }
    auto message = call(service, QString::fromLatin1(row.path), row.interface, row.proof);
    if (mechanism == gnomeSessionManager || mechanism == kdePolicyAgent) {
        message << flagsOf(mechanism, wish);
    }
    return message;
}

std::optional<bool> proofFromReply(LockMechanism mechanism, const QDBusMessage& reply, const LockWish& wish) {
    if (isWithoutAnswer(reply)) {
        return false;
    }
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return std::nullopt;
    }
    if (isLogind(mechanism)) {
        return reply.signature() == QLatin1String("a(ssssuu)")
                   ? std::optional(isListed(reply, logindWhat(mechanism), wish))
                   : std::nullopt;
    }
    const QVariant first = reply.arguments().constFirst();
    return first.metaType().id() == QMetaType::Bool ? std::optional(first.toBool()) : std::nullopt;
}

bool isEnforcedLater(LockMechanism mechanism) {
    return mechanism == kdePolicyAgent;
}

}  // namespace kestro
