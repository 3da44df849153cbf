#include "fuzz/bus_loopback.h"
#include "fuzz/generated_values.h"
#include "fuzz/requirement.h"
#include "platform/desktop/bus_notifications.h"
#include "platform/desktop/lock_mechanism.h"
#include "platform/desktop/power_profiles_daemon.h"
#include "shell/linux/notifier/watcher_reply.h"
#include "shell/linux/settings_portal.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include <cstddef>
#include <cstdint>
#include <variant>

namespace kestro {
namespace {

/// Lock requests: the session's daemons, the portal and the login manager.
void readLock(const QDBusMessage& reply) {
    for (const LockMechanism mechanism : allLockMechanisms()) {
        for (const bool displayAndSystem : {true, false}) {
            const LockWish wish{displayAndSystem, QStringLiteral("Kestro Keep-Awake Active")};
            const auto proof = proofFromReply(mechanism, reply, wish);
            require(!proof || reply.type() == QDBusMessage::ReplyMessage);
        }
        const auto lock = lockFromReply(mechanism, reply);
        require(!lock || (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()));
        if (lock) {
            const auto release = releaseCall(mechanism, *lock, QStringLiteral(":1.1"));
            require(!release || release->type() == QDBusMessage::MethodCallMessage);
        }
    }
}

/// A watcher's answer to whether it has a host. It has one unless it denies that.
void readHost(const QDBusMessage& reply) {
    const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage;
    require(!isAnswer || !watcher_reply::isTimeout(reply));
    require(watcher_reply::reportsHost(reply) || isAnswer);
}

/// The power daemon and the portal's settings, whose values are wrapped alike.
void readValue(const QVariant& value) {
    offeredModes(value);
    const QVariant content = settings_portal::unwrapped(value);
    require(content.metaType() != QMetaType::fromType<QDBusVariant>());
    offeredModes(content);
}

void readNotification(const QDBusMessage& signal) {
    constexpr std::size_t mostEntries = 64;
    constexpr std::size_t longestText = 4096;
    const NotificationUserInfo userInfo = notificationUserInfo(signal);
    require(userInfo.size() <= mostEntries);
    for (const auto& [key, value] : userInfo) {
        const auto* const text = std::get_if<std::string>(&value);
        require(text == nullptr || text->size() <= longestText);
    }
}

}  // namespace
}  // namespace kestro

// Replies and signals of any types are read or ignored, as received from another process and as made by hand.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestro;
    GeneratedValues values({data, size});
    const QString error = values.flag() ? QStringLiteral("org.freedesktop.DBus.Error.AccessDenied") : QString();
    const QDBusMessage reply = BusLoopback::shared().receive(values.arguments());
    readNotification(reply);
    readLock(reply);
    readHost(reply);
    switchFailure(reply);
    for (const QVariant& value : reply.arguments()) {
        readValue(value);
    }
    const QDBusMessage refusal = QDBusMessage::createError(error, values.text());
    readLock(refusal);
    readHost(refusal);
    switchFailure(refusal);
    return 0;
}
