#pragma once

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QObject>

namespace kestro {

/// Calls `handle` with the reply or error, unless `context` is destroyed first.
template <typename Handle>
void whenAnswered(const QDBusPendingCall& call, QObject* context, Handle handle) {
    auto* watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, handle] {
        watcher->deleteLater();
        handle(watcher->reply());
    });
}

/// True for a successful reply whose values have exactly these types.
inline bool isReply(const QDBusMessage& message, QLatin1StringView signature) {
    return message.type() == QDBusMessage::ReplyMessage && message.signature() == signature;
}

}  // namespace kestro
