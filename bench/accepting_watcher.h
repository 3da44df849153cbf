#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <functional>

namespace kestro::bench {

/// A status notifier watcher that accepts every item and stores only the fact of a registration.
class AcceptingWatcher : public QDBusVirtualObject {
public:
    /// Called with the item's bus name, which contains its process identifier.
    std::function<void(const QString& item)> onRegister;

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QLatin1String("RegisterStatusNotifierItem")) {
            connection.send(message.createReply());
            if (onRegister) {
                onRegister(message.arguments().value(0).toString());
            }
            return true;
        }
        if (message.member() == QLatin1String("Get") && message.arguments().size() == 2) {
            const auto name = message.arguments().at(1).toString();
            connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value(name)))));
            return true;
        }
        if (message.member() == QLatin1String("GetAll")) {
            QVariantMap all;
            for (const char* name :
                 {"IsStatusNotifierHostRegistered", "ProtocolVersion", "RegisteredStatusNotifierItems"}) {
                all.insert(QLatin1String(name), value(QLatin1String(name)));
            }
            connection.send(message.createReply(all));
            return true;
        }
        return false;
    }

private:
    static QVariant value(const QString& property) {
        if (property == QLatin1String("IsStatusNotifierHostRegistered")) {
            return true;
        }
        if (property == QLatin1String("ProtocolVersion")) {
            return 0;
        }
        return QStringList();
    }
};

}  // namespace kestro::bench
