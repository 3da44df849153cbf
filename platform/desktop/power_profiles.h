#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "platform/desktop/bus_name_owners.h"
#include "platform/desktop/platform_profile.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

namespace kestro {

/// The machine's power profile: the power-profiles daemon on the system bus
/// (`org.freedesktop.UPower.PowerProfiles`, else its older name `net.hadess.PowerProfiles`), or the kernel's
/// platform profile where there is no daemon.
///
/// The daemon tells when the profile changes, so that reading touches nothing but memory. The bus is handled on
/// the main thread, where this object lives, without ever waiting; the public functions are for background
/// threads, which must have ended, or been let go by `close`, before this object dies.
class PowerProfiles final : public QObject {
    Q_OBJECT

public:
    struct Timing {
        /// How long a reader waits for the daemon's very first answer.
        std::chrono::milliseconds firstAnswer = std::chrono::seconds(1);
        /// How long a switch may take: a person may have to answer first.
        std::chrono::milliseconds consent = std::chrono::seconds(120);
    };

    explicit PowerProfiles(const QDBusConnection& systemBus, PlatformProfile::Paths paths = {})
        : PowerProfiles(systemBus, std::move(paths), Timing()) {}
    PowerProfiles(const QDBusConnection& systemBus, PlatformProfile::Paths paths, Timing timing);
    ~PowerProfiles() override;

    /// A report in the form of `pmset -g`, with a line such as " powermode            2" when the profile is
    /// known and without one when it is not.
    std::string pmsetReport();

    /// Switches, and returns when the system has switched or refused and the profile has been read again. A
    /// newer call ends an older one's wait, and so does `close`.
    void select(PowerProfile profile);

    /// Lets go everybody who waits, now and from now on. Called by itself when the application is about to quit.
    void close();

private Q_SLOTS:
    void onPropertiesChanged(const QDBusMessage& signal);

private:
    struct Daemon {
        QString service;
        QString owner;  // empty: there is no daemon
        friend bool operator==(const Daemon&, const Daemon&) = default;
    };

    /// What background threads see. Everything is guarded by the mutex.
    struct Shared {
        bool isKnown = false;
        bool hasDaemon = false;
        bool isClosed = false;
        std::optional<PowerProfile> active;  // as the daemon says
        std::uint64_t newestSelection = 0;
        std::uint64_t finishedSelection = 0;
    };

    void ownerChanged();
    void readActiveProfile();
    void finishReading(const Daemon& daemon, const QDBusMessage& reply);
    void writeActiveProfile(PowerProfile profile, std::uint64_t selection);
    void setActive(const QVariant& value);
    void finishSelections();

    PlatformProfile platformProfile_;
    Timing timing_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Shared shared_;

    // Main thread only.
    Daemon daemon_;
    bool isReading_ = false;
    bool mustReadAgain_ = false;
    std::uint64_t requestedSelection_ = 0;
    std::uint64_t writtenSelection_ = 0;
    BusNameOwners owners_;
};

}  // namespace kestro
