#include "platform/desktop/power_profiles.h"

#include "platform/desktop/power_profiles_daemon.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QMetaObject>
#include <QVariantMap>

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

QStringList serviceNames() {
    QStringList names;
    for (const auto& daemon : powerProfilesDaemons) {
        names.push_back(QString::fromLatin1(daemon.service));
    }
    return names;
}

}  // namespace

PowerProfiles::PowerProfiles(BusLink& systemBus, PlatformProfile::Paths paths, Timing timing)
    : platformProfile_(std::move(paths)),
      timing_(timing),
      link_(systemBus),
      owners_(systemBus, serviceNames(), [this](const QString&) { ownerChanged(); }) {
    connect(&link_, &BusLink::changed, this, &PowerProfiles::followDaemon);
    followDaemon();
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &PowerProfiles::close);
}

void PowerProfiles::followDaemon() {
    startedDaemons_ = 0;
    isStarting_ = false;
    if (!link_.isConnected()) {
        ownerChanged();
        return;
    }
    for (const auto& daemon : powerProfilesDaemons) {
        // The handler checks the sender: naming the service here would make Qt block on the bus.
        QDBusConnection(link_.connection())
            .connect(QString(), QString::fromLatin1(daemon.path), QString::fromLatin1(propertiesInterface),
                     QStringLiteral("PropertiesChanged"), {QString::fromLatin1(daemon.service)}, QString(), this,
                     SLOT(onPropertiesChanged(QDBusMessage)));
    }
    const std::lock_guard lock(mutex_);
    shared_.isKnown = owners_.isKnown();
}

PowerProfiles::~PowerProfiles() {
    close();
}

std::string PowerProfiles::pmsetReport() {
    std::optional<PowerProfile> profile;
    bool hasDaemon = false;
    bool isUnclear = false;
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, timing_.firstAnswer, [this] { return shared_.isKnown || shared_.isClosed; });
        profile = shared_.active;
        hasDaemon = shared_.hasDaemon;
        isUnclear = hasDaemon && !profile && shared_.isKnown && !shared_.isClosed;
    }
    if (!hasDaemon) {
        profile = platformProfile_.read();
    }
    if (isUnclear) {
        // A daemon that had just started may have replied too early; the next report has its current profile.
        QMetaObject::invokeMethod(
            this, [this] { readActiveProfile(); }, Qt::QueuedConnection);
    }
    return "System-wide power settings:\nCurrently in use:\n" +
           (profile ? fmt::format(" {:<20} {}\n", "powermode", static_cast<int>(*profile)) : std::string());
}

void PowerProfiles::select(PowerProfile profile) {
    std::unique_lock lock(mutex_);
    const auto selection = ++shared_.newestSelection;
    const auto isOver = [this, selection] { return shared_.isClosed || shared_.newestSelection != selection; };
    changed_.notify_all();
    changed_.wait_for(lock, timing_.firstAnswer, [&] { return shared_.isKnown || isOver(); });
    if (isOver()) {
        return;
    }
    if (!shared_.hasDaemon) {
        lock.unlock();
        selectInKernel(profile, selection);
        return;
    }
    QMetaObject::invokeMethod(
        this, [this, profile, selection] { writeActiveProfile(profile, selection); }, Qt::QueuedConnection);
    changed_.wait_for(lock, timing_.consent, [&] { return shared_.finishedSelection >= selection || isOver(); });
}

void PowerProfiles::selectInKernel(PowerProfile profile, std::uint64_t selection) {
    const auto isWanted = [&] {
        const std::lock_guard lock(mutex_);
        return !shared_.isClosed && shared_.newestSelection == selection;
    };
    const auto before = platformProfile_.read();
    platformProfile_.write(profile, timing_.consent, isWanted);
    if (!isWanted()) {
        return;
    }
    using enum PowerModeConditions::Failure;
    const auto after = platformProfile_.read();
    const auto reason = platformProfile_.offers(profile) ? (before == after ? denied : reverted) : noService;
    QMetaObject::invokeMethod(
        this,
        [this, profile, reason, after] {
            switch_ = {profile, reason};
            judgeSwitch(after);
        },
        Qt::QueuedConnection);
}

void PowerProfiles::close() {
    const std::lock_guard lock(mutex_);
    shared_.isClosed = true;
    changed_.notify_all();
}

void PowerProfiles::ownerChanged() {
    Daemon present;
    for (const auto& name : serviceNames()) {
        if (present.owner.isEmpty()) {
            present = {name, owners_.owner(name)};
        }
    }
    const bool isStarting = present.owner.isEmpty() && owners_.isKnown() && startNextDaemon();
    const bool isSame = present == daemon_ || (present.owner.isEmpty() && daemon_.owner.isEmpty());
    daemon_ = present;
    {
        const std::lock_guard lock(mutex_);
        shared_.hasDaemon = !daemon_.owner.isEmpty();
        if (!isSame) {
            shared_.active.reset();
            shared_.isKnown = false;
        }
        if (!shared_.hasDaemon) {
            shared_.isKnown = owners_.isKnown() && !isStarting;
        }
        changed_.notify_all();
    }
    if (!isSame) {
        setOffered({});
        isReading_ = false;
        writtenSelection_ = requestedSelection_;  // no daemon is left to reply
        readActiveProfile();
    }
}

/// Whether a daemon is being started. Names without an activation file fail at once.
bool PowerProfiles::startNextDaemon() {
    if (isStarting_ || !link_.isConnected() || startedDaemons_ == powerProfilesDaemons.size()) {
        return isStarting_;
    }
    isStarting_ = true;
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("StartServiceByName"));
    message << QString::fromLatin1(powerProfilesDaemons.at(startedDaemons_++).service) << std::uint32_t{0};
    auto* watcher = new QDBusPendingCallWatcher(owners_.bus().asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, bus = owners_.bus().name()](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (bus == owners_.bus().name()) {
                    isStarting_ = false;
                    startedDaemons_ = finished->isError() ? startedDaemons_ : powerProfilesDaemons.size();
                    ownerChanged();
                }
            });
    return true;
}

void PowerProfiles::readActiveProfile() {
    if (daemon_.owner.isEmpty()) {
        finishSelections();
        return;
    }
    mustReadAgain_ = isReading_;
    if (std::exchange(isReading_, true)) {
        return;  // one query at a time, however many changes the daemon announces
    }
    auto* watcher =
        new QDBusPendingCallWatcher(owners_.bus().asyncCall(propertiesCall(daemon_.service, "GetAll")), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, daemon = daemon_](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                finishReading(daemon, finished->reply());
            });
}

void PowerProfiles::finishReading(const Daemon& daemon, const QDBusMessage& reply) {
    if (daemon != daemon_) {
        return;
    }
    isReading_ = false;
    const auto arguments = reply.arguments();
    QVariantMap properties;
    if (reply.signature() == QLatin1String("a{sv}")) {
        arguments.constFirst().value<QDBusArgument>() >> properties;
    }
    setOffered(properties.value(offeredProfilesProperty));
    setActive(properties.value(activeProfileProperty));
    if (mustReadAgain_) {
        readActiveProfile();
    } else {
        finishSelections();
    }
}

void PowerProfiles::writeActiveProfile(PowerProfile profile, std::uint64_t selection) {
    requestedSelection_ = std::max(requestedSelection_, selection);
    if (daemon_.owner.isEmpty()) {
        writtenSelection_ = requestedSelection_;
        finishSelections();
        return;
    }
    const auto name = namesOf(profile).busName;
    auto message = propertiesCall(daemon_.service, "Set");
    message << activeProfileProperty
            << QVariant::fromValue(
                   QDBusVariant(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()))));
    message.setInteractiveAuthorizationAllowed(true);
    auto* watcher = new QDBusPendingCallWatcher(
        owners_.bus().asyncCall(message, static_cast<int>(timing_.consent.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, profile, selection](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                finishWriting(profile, selection, finished->reply());
            });
}

void PowerProfiles::finishWriting(PowerProfile profile, std::uint64_t selection, const QDBusMessage& reply) {
    writtenSelection_ = std::max(writtenSelection_, selection);
    if (selection == requestedSelection_) {
        switch_ = {profile, switchFailure(reply)};
    }
    // Whatever the reply: only the profile that the daemon reports now counts.
    readActiveProfile();
}

void PowerProfiles::onPropertiesChanged(const QDBusMessage& signal) {
    if (daemon_.owner.isEmpty() || signal.service() != daemon_.owner ||
        signal.signature() != QLatin1String("sa{sv}as") ||
        signal.arguments().at(0).toString() != daemon_.service) {
        return;
    }
    QVariantMap changes;
    signal.arguments().at(1).value<QDBusArgument>() >> changes;
    if (const auto change = changes.constFind(offeredProfilesProperty); change != changes.constEnd()) {
        setOffered(*change);
    }
    if (const auto change = changes.constFind(activeProfileProperty); change != changes.constEnd()) {
        setActive(*change);
    } else if (signal.arguments().at(2).toStringList().contains(activeProfileProperty)) {
        readActiveProfile();
    }
}

void PowerProfiles::setActive(const QVariant& value) {
    const std::lock_guard lock(mutex_);
    shared_.active = value.metaType().id() == QMetaType::QString
                         ? profileFromBusName(value.toString().toStdString())
                         : std::nullopt;
    shared_.isKnown = true;
    changed_.notify_all();
}

void PowerProfiles::setOffered(const QVariant& profiles) {
    PowerModeConditions conditions = conditions_;
    conditions.isOffered = offeredModes(profiles);
    setConditions(conditions);
}

void PowerProfiles::finishSelections() {
    std::optional<PowerProfile> current;
    {
        const std::lock_guard lock(mutex_);
        shared_.finishedSelection = std::max(shared_.finishedSelection, writtenSelection_);
        current = shared_.active;
        changed_.notify_all();
    }
    judgeSwitch(current);
}

/// Records what became of the newest switch, now that the profile has been read again.
void PowerProfiles::judgeSwitch(std::optional<PowerProfile> current) {
    const auto finished = std::exchange(switch_, std::nullopt);
    if (!finished) {
        return;
    }
    PowerModeConditions conditions = conditions_;
    conditions.failedSwitch.reset();
    if (current != finished->profile) {
        conditions.failedSwitch = {static_cast<int>(finished->profile), finished->reason};
    }
    setConditions(conditions);
}

void PowerProfiles::setConditions(const PowerModeConditions& conditions) {
    if (std::exchange(conditions_, conditions) != conditions && conditionsHandler_) {
        conditionsHandler_();
    }
}

}  // namespace kestro
