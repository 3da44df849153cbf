#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QThread>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace kestro::test {

/// A service on a private bus with its own thread, as a real one has its own process. Records every call as
/// text, such as `Inhibit("Kestro", "why", 8u)`, and replies as configured.
class FakeService {
public:
    using Answer = std::function<QDBusMessage(const QDBusMessage& call)>;

    using Answers = std::map<QString, Answer>;

    /// `answers` are in place before the service appears on the bus.
    FakeService(const QDBusConnection& connection, const QString& name, Answers answers = {});
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    /// Sets the reply to calls of this member; without one they get an empty reply.
    void answer(const QString& member, Answer answer);

    /// Refuses calls of this member.
    void refuse(const QString& member, const QString& error = QStringLiteral("org.freedesktop.DBus.Error.Failed"));

    /// Leaves calls unanswered until `answerHeld`, which answers them in order of arrival.
    void hold(bool holding);
    std::size_t heldCalls() const;
    void answerHeld();

    /// Releases the name on the bus, and acquires it again.
    void vanish();
    void appear();

    std::vector<std::string> calls() const;

    /// When this returns, the service has processed everything that `sender` sent before, and `sender` has
    /// handled everything that reached it until then.
    void settle(const QDBusConnection& sender) const;
    const QDBusConnection& connection() const { return connection_; }

private:
    class Object;

    QDBusConnection connection_;
    QString name_;
    QThread thread_;
    Object* object_;
};

/// The arguments of a message as text, without the token of a portal request.
std::string describe(const QDBusMessage& message);

}  // namespace kestro::test
