#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include <QVariantList>

#include <functional>
#include <memory>
#include <optional>

namespace kestro {

/// Two connected ends of the bus protocol in this process, without a bus: what arrives at one has been encoded and
/// decoded as a message of another process is. Main thread; the only one of the process.
class BusLoopback {
public:
    static BusLoopback& shared();

    /// Sends a call to the far end and waits for its reply.
    QDBusMessage call(const QDBusMessage& message) const;

    /// Where objects can be published.
    const QDBusConnection& farEnd() const { return *far_; }

    /// Messages with the arguments, as received.
    struct Received {
        QDBusMessage call;   ///< at the far end
        QDBusMessage reply;  ///< at the near end
    };

    /// nullopt: the arguments cannot be sent.
    std::optional<Received> receive(const QVariantList& arguments);

private:
    BusLoopback();
    ~BusLoopback();

    class Echo;

    std::unique_ptr<QCoreApplication> application_;
    std::unique_ptr<QDBusServer> server_;
    std::unique_ptr<Echo> echo_;
    std::optional<QDBusConnection> far_;
    std::optional<QDBusConnection> near_;
};

}  // namespace kestro
