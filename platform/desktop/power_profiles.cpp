#include "platform/desktop/power_profiles.h"

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

struct DaemonNames {
    const char* service;  // also the name of its interface
    const char* path;
};

constexpr std::array<DaemonNames, 2> daemons{{
    {"org.freedesktop.UPower.PowerProfiles", "/org/freedesktop/UPower/PowerProfiles"},
    {"net.hadess.PowerProfiles", "/net/hadess/PowerProfiles"},
}};

constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
const QString activeProfile = QStringLiteral("ActiveProfile");

QStringList serviceNames() {
    QStringList names;
    for (const auto& daemon : daemons) {
        names.push_back(QString::fromLatin1(daemon.service));
    }
    return names;
}

QDBusMessage propertyCall(const QString& service, const char* member) {
    const auto* names = std::ranges::find(daemons, service.toStdString(), &DaemonNames::service);
    auto message =
        QDBusMessage::createMethodCall(service, QString::fromLatin1(names->path),
                                       QString::fromLatin1(propertiesInterface), QString::fromLatin1(member));
    message.setAutoStartService(false);
    return message << service << activeProfile;
}

}  // namespace

PowerProfiles::PowerProfiles(const QDBusConnection& systemBus, PlatformProfile::Paths paths, Timing timing)
    : platformProfile_(std::move(paths)),
      timing_(timing),
      owners_(systemBus, serviceNames(), [this](const QString&) { ownerChanged(); }) {
    for (const auto& daemon : daemons) {
        // The handler checks the sender: naming the service here would make Qt block on the bus.
        QDBusConnection(systemBus).connect(
            QString(), QString::fromLatin1(daemon.path), QString::fromLatin1(propertiesInterface),
            QStringLiteral("PropertiesChanged"), {QString::fromLatin1(daemon.service)}, QString(), this,
            SLOT(onPropertiesChanged(QDBusMessage)));
    }
    shared_.isKnown = owners_.isKnown();
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &PowerProfiles::close);
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
        platformProfile_.write(profile, timing_.consent, [&] {
            const std::lock_guard relock(mutex_);
            return !isOver();
        });
        return;
    }
    QMetaObject::invokeMethod(
        this, [this, profile, selection] { writeActiveProfile(profile, selection); }, Qt::QueuedConnection);
    changed_.wait_for(lock, timing_.consent, [&] { return shared_.finishedSelection >= selection || isOver(); });
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
            shared_.isKnown = owners_.isKnown();
        }
        changed_.notify_all();
    }
    if (!isSame) {
        isReading_ = false;
        writtenSelection_ = requestedSelection_;  // no daemon is left to reply
        readActiveProfile();
    }
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
        new QDBusPendingCallWatcher(owners_.bus().asyncCall(propertyCall(daemon_.service, "Get")), this);
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
    const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage && !arguments.isEmpty();
    setActive(isAnswer ? arguments.constFirst().value<QDBusVariant>().variant() : QVariant());
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
    auto message = propertyCall(daemon_.service, "Set");
    message << QVariant::fromValue(
        QDBusVariant(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()))));
    message.setInteractiveAuthorizationAllowed(true);
    auto* watcher = new QDBusPendingCallWatcher(
        owners_.bus().asyncCall(message, static_cast<int>(timing_.consent.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, selection](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                writtenSelection_ = std::max(writtenSelection_, selection);
                // Whatever the reply: only the profile that the daemon reports now counts.
                readActiveProfile();
            });
}

void PowerProfiles::onPropertiesChanged(const QDBusMessage& signal) {
    if (daemon_.owner.isEmpty() || signal.service() != daemon_.owner ||
        signal.signature() != QLatin1String("sa{sv}as") ||
        signal.arguments().at(0).toString() != daemon_.service) {
        return;
    }
    QVariantMap changes;
    signal.arguments().at(1).value<QDBusArgument>() >> changes;
    if (const auto change = changes.constFind(activeProfile); change != changes.constEnd()) {
        setActive(*change);
    } else if (signal.arguments().at(2).toStringList().contains(activeProfile)) {
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

void PowerProfiles::finishSelections() {
    const std::lock_guard lock(mutex_);
    shared_.finishedSelection = std::max(shared_.finishedSelection, writtenSelection_);
    changed_.notify_all();
}

}  // namespace kestro
