#include "tests/drills/hostile_service.h"

#include "tests/drills/hostile_messages.h"

#include <QDBusObjectPath>
#include <QDBusVariant>

namespace kestro::drills {

namespace {

using test::FakeService;

/// The members that Kestro calls on any of its services.
const QStringList members{QStringLiteral("Get"),
                          QStringLiteral("GetAll"),
                          QStringLiteral("Set"),
                          QStringLiteral("Inhibit"),
                          QStringLiteral("UnInhibit"),
                          QStringLiteral("Uninhibit"),
                          QStringLiteral("IsInhibited"),
                          QStringLiteral("HasInhibit"),
                          QStringLiteral("AddInhibition"),
                          QStringLiteral("Read"),
                          QStringLiteral("GetProperty"),
                          QStringLiteral("ListInhibitors"),
                          QStringLiteral("GetInhibitors"),
                          QStringLiteral("GetInhibit"),
                          QStringLiteral("HasInhibition"),
                          QStringLiteral("ListInhibitions"),
                          QStringLiteral("RegisterStatusNotifierItem")};

}  // namespace

QDBusMessage hostileAnswer(const QDBusMessage& call, const QDBusConnection& connection, DrillRandom& random) {
    switch (random.below(7)) {
        case 0:
            return call.createErrorReply(QStringLiteral("org.example.Error"), QString(1000, QLatin1Char('e')));
        case 1:
            connection.send(call.createReply(hostileArguments(random)));  // and a second one below
            break;
        case 2:
            return call.createReply(1U);
        case 3:
            return call.createReply(QVariant::fromValue(QDBusVariant(random.onceIn(2))));
        case 4:
            return call.createReply(QVariant::fromValue(QDBusObjectPath(QStringLiteral("/request"))));
        default:
            break;
    }
    return call.createReply(hostileArguments(random));
}

HostileService::HostileService(DesktopSession& session, DesktopSession::Bus bus, const QString& name,
                               std::uint32_t seed)
    : random_(seed) {
    FakeService::Answers answers;
    for (const QString& member : members) {
        answers[member] = [this](const QDBusMessage& call) { return answer(call); };
    }
    service_ = std::make_unique<FakeService>(session.connect(bus), name, std::move(answers));
}

QDBusMessage HostileService::answer(const QDBusMessage& call) {
    const std::lock_guard lock(mutex_);
    return hostileAnswer(call, service_->connection(), random_);
}

void HostileService::changeOwner() {
    if (isThere_) {
        service_->vanish();
    } else {
        service_->appear();
    }
    isThere_ = !isThere_;
}

void HostileService::hold(bool isHolding) {
    service_->hold(isHolding);
    if (!isHolding) {
        service_->answerHeld();
    }
}

}  // namespace kestro::drills
