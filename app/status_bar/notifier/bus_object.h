#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariantList>
#include <functional>
#include <map>
#include <optional>
#include <variant>

namespace kestro {

/// Why a call was refused; becomes the standard bus error of that name.
struct BusRefusal {
    QString reason;
};

/// What a call answers: its results, or the refusal.
using BusReply = std::variant<QVariantList, BusRefusal>;

/// One object with one interface of ours at one path of one connection. A call reaches its handler only if
/// its argument types are exactly the declared ones; anything else gets a standard bus error. The standard
/// property interface is answered from the property table; every property is read-only. Main thread.
class BusObject : public QDBusVirtualObject {
    Q_OBJECT

public:
    using Handler = std::function<BusReply(const QVariantList& arguments)>;
    using Getter = std::function<QVariant()>;

    /// `description` is the introspection text of the interface.
    BusObject(QString path, QString interface, QString description);
    ~BusObject() override;

    /// Declares a method; `signature` is its argument types in bus notation. Before `publish`.
    void addMethod(const QString& name, const QString& signature, Handler handler);

    /// Declares a property; the getter's value must have the type that the description tells.
    void addProperty(const QString& name, Getter getter);

    /// Puts the object on the connection. False: the path is taken or the connection is closed.
    bool publish(const QDBusConnection& connection);

    /// Takes the object off the connection again; handlers are not called after this.
    void withdraw();

    /// Sends a signal of the interface; nothing happens while not published.
    void emitSignal(const QString& name, const QVariantList& arguments = {}) const;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Method {
        QString signature;
        Handler handler;
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
