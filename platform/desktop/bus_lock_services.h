#pragma once

#include "platform/desktop/bus_link.h"
#include "platform/desktop/bus_lock.h"
#include "platform/desktop/bus_name_owners.h"
#include "platform/desktop/lock_services.h"

#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace kestro {

/// The mechanisms of the real session: services on the two buses, and the X server's timers or the Wayland
/// compositor. Only services already on the bus are asked: none is started. Survives the loss of a bus. Main
/// thread.
class BusLockServices final : public QObject, public LockServices {
    Q_OBJECT

public:
    struct Options {
        /// Suspends the X server's screen saver and its power timers, or resumes them; calls nest. Returns false
        /// where there is no X server. Empty: the same.
        std::function<bool(bool suspend)> suspendScreenSaver = {};
        LockSession session = {};
        /// The socket of the Wayland compositor; empty: there is none.
        QString waylandSocket = {};
        BusLock::Timing timing = {};
    };

    BusLockServices(BusLink& sessionBus, BusLink& systemBus, Options options);

    /// Whether this process runs inside a sandbox such as Flatpak's or Snap's.
    static bool runsSandboxed();

    /// Whether the session is a compositor's, even where the toolkit uses an X server inside it.
    static bool runsOnWayland();

    bool isKnown() const override { return sessionOwners_.isKnown() && systemOwners_.isKnown(); }
    QString owner(LockMechanism mechanism) const override;
    LockSession session() const override { return options_.session; }
    [[nodiscard]] std::unique_ptr<ServiceLock> ask(LockMechanism mechanism, const LockWish& wish,
                                                   std::function<void()> onChange) override;
    void poll() override;
    void setHandlers(std::function<void()> onOwnersChanged, std::function<void()> onResumed) override;

private Q_SLOTS:
    void onPrepareForSleep(const QDBusMessage& signal);

private:
    void followSleep();

    BusLink& systemBus_;
    const Options options_;
    std::function<void()> onOwnersChanged_;
    std::function<void()> onResumed_;
    BusNameOwners sessionOwners_;
    BusNameOwners systemOwners_;
};

}  // namespace kestro
