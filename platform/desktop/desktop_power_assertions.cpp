#include "platform/desktop/desktop_power_assertions.h"

#include <thread>
#include <utility>

namespace kestro {

namespace {

constexpr auto displayType = "PreventUserIdleDisplaySleep";
constexpr auto systemType = "PreventUserIdleSystemSleep";
constexpr std::uint32_t levelOn = 255;

/// Too short to be noticed, long enough that polling costs nothing.
constexpr std::chrono::milliseconds pollInterval(1);

QStringList namesOn(bool systemBus) {
    QStringList names;
    for (std::size_t index = 0; index < inhibitionBackendCount; ++index) {
        const auto backend = static_cast<InhibitionBackend>(index);
        if (isOnSystemBus(backend) == systemBus) {
            names.push_back(serviceName(backend));
        }
    }
    return names;
}

bool isSettled(const PowerInhibition& inhibition) {
    return inhibition.state() == PowerInhibition::State::held ||
           inhibition.state() == PowerInhibition::State::refused;
}

}  // namespace

DesktopPowerAssertions::DesktopPowerAssertions(const QDBusConnection& sessionBus, const QDBusConnection& systemBus,
                                               Timing timing)
    : sessionOwners_(sessionBus, namesOn(false), [this](const QString& name) { ownerChanged(name); }),
      systemOwners_(systemBus, namesOn(true), [this](const QString& name) { ownerChanged(name); }),
      timing_(timing) {
    QDBusConnection(sessionBus)
        .connect(QString(), QString(), QStringLiteral("org.freedesktop.portal.Request"),
                 QStringLiteral("Response"), this, SLOT(onPortalResponse(QDBusMessage)));
}

DesktopPowerAssertions::~DesktopPowerAssertions() = default;

std::optional<PowerAssertionID> DesktopPowerAssertions::create(const std::string& type, std::uint32_t level,
                                                               const std::string& name) {
    if ((type != displayType && type != systemType) || level != levelOn) {
        return std::nullopt;
    }
    const auto deadline = std::chrono::steady_clock::now() + timing_.answerBound;
    const PowerAssertionID id = ++lastID_;
    auto inhibition = std::make_unique<PowerInhibition>(
        InhibitionBuses{sessionOwners_, systemOwners_, timing_.patience},
        InhibitionWish{type == displayType, QString::fromStdString(name)}, [this, id] { revoke(id); });
    while (!isSettled(*inhibition) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(pollInterval);
        sessionOwners_.poll();
        systemOwners_.poll();
        inhibition->poll();
    }
    if (inhibition->state() == PowerInhibition::State::refused) {
        return std::nullopt;
    }
    inhibitions_.emplace(id, std::move(inhibition));
    return id;
}

void DesktopPowerAssertions::release(PowerAssertionID id) {
    inhibitions_.erase(id);
}

void DesktopPowerAssertions::setRevocationHandler(std::function<void(PowerAssertionID)> handler) {
    revocationHandler_ = std::move(handler);
}

void DesktopPowerAssertions::onPortalResponse(const QDBusMessage& signal) {
    const auto arguments = signal.arguments();
    const bool comesFromPortal = signal.service() == sessionOwners_.owner(serviceName(InhibitionBackend::portal));
    // Response 0 confirms the request; any other ends it.
    if (!comesFromPortal || arguments.isEmpty() || arguments.constFirst().metaType().id() != QMetaType::UInt ||
        arguments.constFirst().toUInt() == 0) {
        return;
    }
    for (const auto& [id, inhibition] : inhibitions_) {
        inhibition->requestEnded(signal.path());
    }
}

void DesktopPowerAssertions::ownerChanged(const QString& name) {
    if (name.isEmpty()) {
        for (const auto& [id, inhibition] : inhibitions_) {
            inhibition->poll();
        }
        return;
    }
    for (std::size_t index = 0; index < inhibitionBackendCount; ++index) {
        const auto backend = static_cast<InhibitionBackend>(index);
        if (serviceName(backend) == name) {
            for (const auto& [id, inhibition] : inhibitions_) {
                inhibition->ownersChanged(backend);
            }
        }
    }
}

void DesktopPowerAssertions::revoke(PowerAssertionID id) {
    if (inhibitions_.erase(id) > 0 && revocationHandler_) {
        const auto handler = revocationHandler_;
        handler(id);
    }
}

}  // namespace kestro
