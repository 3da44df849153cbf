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

namespace kestro::testing_support {

/// A service on a private bus that lives on a thread of its own, as a real one lives in a process of its own.
/// Records every call as text, such as `Inhibit("Kestro", "why", 8u)`, and answers as it was told.
class FakeService {
public:
    using Answer = std::function<QDBusMessage(const QDBusMessage& call)>;

    using Answers = std::map<QString, Answer>;

    /// With `answers` the service knows from its first moment on the bus how to answer those members.
    FakeService(const QDBusConnection& connection, const QString& name, Answers answers = {});
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    /// How calls of this member are answered from now on; without one they get an empty reply.
    void answer(const QString& member, Answer answer);

    /// Refuses calls of this member.
    void refuse(const QString& member, const QString& error = QStringLiteral("org.freedesktop.DBus.Error.Failed"));

    /// Leaves calls unanswered until `answerHeld`, which takes them in the order of arrival.
    void hold(bool holding);
    std::size_t heldCalls() const;
    void answerHeld();

    /// Takes the name off the bus, and puts it back.
    void vanish();
    void appear();

    std::vector<std::string> calls() const;

    /// When this returns, the service has seen everything that `sender` sent before, and `sender` has handled
    /// everything that reached it until then.
    void settle(const QDBusConnection& sender) const;
    const QDBusConnection& connection() const { return connection_; }

private:
    class Object;

    QDBusConnection connection_;
    QString name_;
    QThread thread_;
    Object* object_;
};

/// The arguments of a message as text; the token of a portal request is left out.
std::string describe(const QDBusMessage& message);

}  // namespace kestro::testing_support
