#pragma once

#include "tests/support/private_bus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <map>

namespace kestro::test {

/// An owner of Kestro's name that refuses or ignores calls as a test wants it. Otherwise its readout is "RAM 42%".
class ScriptedKestro : public QDBusVirtualObject {
public:
    explicit ScriptedKestro(PrivateBus& bus) : connection_(bus.connect()) {
        connection_.registerVirtualObject(QStringLiteral("/kestro/Readout"), this);
    }

    /// Takes the name.
    void appear() { connection_.interface()->registerService(QStringLiteral("kestro.Readout")); }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QString method = message.member();
        calls.append(method);
        if (isHung) {
            return true;
        }
        if (refusals[method] > 0) {
            --refusals[method];
            connection.send(message.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("not now")));
            return true;
        }
        QDBusMessage reply = message.createReply();
        if (method == QStringLiteral("GetAll")) {
            reply << QVariantMap{{QStringLiteral("Text"), QStringLiteral("RAM 42%")}};
        }
        connection.send(reply);
        return true;
    }

    QStringList calls;                ///< the methods called so far
    std::map<QString, int> refusals;  ///< how many further calls of a method fail
    bool isHung = false;              ///< does not answer

private:
    QDBusConnection connection_;
};

}  // namespace kestro::test
