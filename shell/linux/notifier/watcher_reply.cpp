#include "shell/linux/notifier/watcher_reply.h"

#include "shell/linux/when_answered.h"

#include <QDBusError>
#include <QDBusVariant>

namespace kestro::watcher_reply {

bool reportsHost(const QDBusMessage& reply) {
    if (!isReply(reply, QLatin1StringView("v"))) {
        return true;
    }
    const QVariant value = reply.arguments().at(0).value<QDBusVariant>().variant();
    return value.metaType() != QMetaType::fromType<bool>() || value.toBool();
}

bool isTimeout(const QDBusMessage& reply) {
    const QDBusError::ErrorType error = QDBusError(reply).type();
    return error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut;
}

}  // namespace kestro::watcher_reply
