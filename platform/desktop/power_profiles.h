#pragma once

#include "core/platform/power_mode_service.h"
#include "platform/desktop/bus_link.h"
#include "platform/desktop/bus_name_owners.h"
#include "platform/desktop/platform_profile.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace kestro {

/// The machine's power profile: from the power-profiles daemon on the system bus
/// (`org.freedesktop.UPower.PowerProfiles`, or its older name `net.hadess.PowerProfiles`), or the kernel's
/// platform profile where there is no daemon. tuned-ppd answers under the same names. A daemon that is not running
/// is started once by name; after the bus was lost, once more.
///
/// The daemon announces changes of the profile, so reading only accesses memory. The bus is handled on the main
/// thread, where this object lives, without ever blocking; the public functions are for background threads,
/// which must have ended, or been released by `close`, before this object is destroyed.
class PowerProfiles final : public QObject, public PowerModeService {
    Q_OBJECT

public:
    struct Timing {
        /// How long a reader waits for the daemon's first reply.
        std::chrono::milliseconds firstAnswer = std::chrono::seconds(1);
        /// How long a switch may take: the user may have to authenticate first.
        std::chrono::milliseconds consent = std::chrono::seconds(120);
    };

    explicit PowerProfiles(BusLink& systemBus, PlatformProfile::Paths paths = {})
        : PowerProfiles(systemBus, std::move(paths), Timing()) {}
    PowerProfiles(BusLink& systemBus, PlatformProfile::Paths paths, Timing timing);
    ~PowerProfiles() override;

    /// A report in the form of `pmset -g`, with a line such as " powermode            2" if the profile is known
    /// and without it otherwise.
    std::string pmsetReport();

    /// Switches the profile. Returns when the system has switched or refused and the profile has been read
    /// again. A newer call releases an older one that is still waiting, and so does `close`.
    void select(PowerProfile profile);

    /// Releases all waiting threads, now and from now on. Called automatically when the application is about to
    /// quit.
    void close();

    // For the main thread.
    PowerModeConditions conditions() const override { return conditions_; }
    void setConditionsHandler(std::function<void()> handler) override { conditionsHandler_ = std::move(handler); }

private Q_SLOTS:
    void onPropertiesChanged(const QDBusMessage& signal);

private:
    struct Daemon {
        QString service;
        QString owner;  // empty: there is no daemon
        friend bool operator==(const Daemon&, const Daemon&) = default;
    };

    /// State shared with background threads, guarded by the mutex.
    struct Shared {
        bool isKnown = false;
        bool hasDaemon = false;
        bool isClosed = false;
        std::optional<PowerProfile> active;  // as reported by the daemon
        std::uint64_t newestSelection = 0;
        std::uint64_t finishedSelection = 0;
    };

    void selectInKernel(PowerProfile profile, std::uint64_t selection);
    void followDaemon();
    void ownerChanged();
    bool startNextDaemon();
    void readActiveProfile();
    void finishReading(const Daemon& daemon, const QDBusMessage& reply);
    void writeActiveProfile(PowerProfile profile, std::uint64_t selection);
    void finishWriting(PowerProfile profile, std::uint64_t selection, const QDBusMessage& reply);
    void setActive(const QVariant& value);
    void setOffered(const QVariant& profiles);
    void finishSelections();
    void judgeSwitch(std::optional<PowerProfile> current);
    void setConditions(const PowerModeConditions& conditions);

    PlatformProfile platformProfile_;
    Timing timing_;
    std::mutex mutex_;
    std::condition_variable changed_;
    Shared shared_;

    // Main thread only.
    /// The newest switch, until it is known whether it happened.
    struct Switch {
        PowerProfile profile{};
        PowerModeConditions::Failure reason{};  // in case it did not
    };

    BusLink& link_;
    PowerModeConditions conditions_;
    std::function<void()> conditionsHandler_;
    std::optional<Switch> switch_;
    std::size_t startedDaemons_ = 0;
    bool isStarting_ = false;
    Daemon daemon_;
    bool isReading_ = false;
    bool mustReadAgain_ = false;
    std::uint64_t requestedSelection_ = 0;
    std::uint64_t writtenSelection_ = 0;
    BusNameOwners owners_;
};

}  // namespace kestro
