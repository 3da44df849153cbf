#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <map>
#include <optional>
#include <variant>

namespace kestro {

/// Why a call was refused; sent as the standard bus error of that name.
struct BusRefusal {
    QString reason;
};

/// The outcome of a call: its results or the refusal.
using BusReply = std::variant<QVariantList, BusRefusal>;

/// Exports one object with one interface at one path of one connection. A call reaches its handler only if its
/// argument types match the declared ones exactly; otherwise the caller gets a standard bus error. The standard
/// properties interface is served from the property table; every property is read-only. Main thread.
class BusObject : public QDBusVirtualObject {
    Q_OBJECT

public:
    using Handler = std::function<BusReply(const QVariantList& arguments)>;
    using Getter = std::function<QVariant()>;

    /// The handler of a method that depends on its caller, which is named by its connection's unique name.
    using CallerHandler = std::function<BusReply(const QVariantList& arguments, const QString& caller)>;

    /// `description` is the introspection XML of the interface.
    BusObject(QString path, QString interface, QString description);
    ~BusObject() override;

    /// Declares a method; `signature` is its argument types in bus notation. Call before `publish`.
    void addMethod(const QString& name, const QString& signature, Handler handler);
    void addCallerMethod(const QString& name, const QString& signature, CallerHandler handler);

    /// Declares a property; the getter's value must have the type given in the description. An invalid value: the
    /// object does not have the property now.
    void addProperty(const QString& name, Getter getter);

    /// Exports the object on the connection. False: the path is taken or the connection is closed.
    bool publish(const QDBusConnection& connection);

    /// Removes the object from the connection; handlers are not called afterwards.
    void withdraw();

    /// Sends a signal of the interface; does nothing while unpublished.
    void emitSignal(const QString& name, const QVariantList& arguments = {}) const;

    /// Sends PropertiesChanged to one connection only; does nothing while unpublished. The object does not have
    /// the `lost` properties any more.
    void sendChanges(const QString& receiver, const QVariantMap& changed, const QStringList& lost) const;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Method {
        QString signature;
        CallerHandler handler;
    };

    QDBusMessage call(const QDBusMessage& message) const;
    QDBusMessage readProperty(const QDBusMessage& message) const;

    QString path_;
    QString interface_;
    QString description_;
    std::map<QString, Method> methods_;
    std::map<QString, Getter> properties_;
    std::optional<QDBusConnection> connection_;
};

}  // namespace kestro
