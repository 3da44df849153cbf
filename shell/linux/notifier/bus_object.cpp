#include "shell/linux/notifier/bus_object.h"

#include <QDBusVariant>

#include <utility>

namespace kestro {

namespace {

constexpr QLatin1StringView propertiesInterface("org.freedesktop.DBus.Properties");
constexpr QLatin1StringView unknownInterfaceError("org.freedesktop.DBus.Error.UnknownInterface");
constexpr QLatin1StringView unknownPropertyError("org.freedesktop.DBus.Error.UnknownProperty");
constexpr QLatin1StringView readOnlyError("org.freedesktop.DBus.Error.PropertyReadOnly");

}  // namespace

BusObject::BusObject(QString path, QString interface, QString description)
    : path_(std::move(path)), interface_(std::move(interface)), description_(std::move(description)) {}

BusObject::~BusObject() {
    withdraw();
}

void BusObject::addMethod(const QString& name, const QString& signature, Handler handler) {
    addCallerMethod(name, signature,
                    [handler = std::move(handler)](const QVariantList& arguments, const QString&) {
                        return handler(arguments);
                    });
}

void BusObject::addCallerMethod(const QString& name, const QString& signature, CallerHandler handler) {
    methods_[name] = {signature, std::move(handler)};
}

void BusObject::addProperty(const QString& name, Getter getter) {
    properties_[name] = std::move(getter);
}

bool BusObject::publish(const QDBusConnection& connection) {
    withdraw();
    connection_ = connection;
    return connection_->registerVirtualObject(path_, this);
}

void BusObject::withdraw() {
    if (!connection_) {
        return;
    }
    connection_->unregisterObject(path_);
    connection_.reset();
}

void BusObject::emitSignal(const QString& name, const QVariantList& arguments) const {
    if (!connection_) {
        return;
    }
    QDBusMessage message = QDBusMessage::createSignal(path_, interface_, name);
    message.setArguments(arguments);
    connection_->send(message);
}

void BusObject::sendChanges(const QString& receiver, const QVariantMap& changed, const QStringList& lost) const {
    if (!connection_) {
        return;
    }
    QDBusMessage message = QDBusMessage::createTargetedSignal(receiver, path_, QString(propertiesInterface),
                                                              QStringLiteral("PropertiesChanged"));
    message.setArguments({interface_, changed, lost});
    connection_->send(message);
}

QString BusObject::introspect(const QString&) const {
    return description_;
}

bool BusObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.type() != QDBusMessage::MethodCallMessage) {
        return false;
    }

    QDBusMessage reply;
    if (message.interface() == propertiesInterface) {
        reply = readProperty(message);
    } else if (message.interface().isEmpty() || message.interface() == interface_) {
        reply = call(message);
    }
    if (reply.type() == QDBusMessage::InvalidMessage) {
        return false;
    }
    if (message.isReplyRequired()) {
        connection.send(reply);
    }
    return true;
}

QDBusMessage BusObject::call(const QDBusMessage& message) const {
    const auto found = methods_.find(message.member());
    if (found == methods_.end()) {
        return {};
    }
    const Method& method = found->second;
    if (message.signature() != method.signature) {
        return message.createErrorReply(QDBusError::InvalidArgs,
                                        QStringLiteral("expected arguments of type \"%1\"").arg(method.signature));
    }
    const BusReply answer = method.handler(message.arguments(), message.service());
    if (const auto* refusal = std::get_if<BusRefusal>(&answer)) {
        return message.createErrorReply(QDBusError::InvalidArgs, refusal->reason);
    }
    return message.createReply(std::get<QVariantList>(answer));
}

QDBusMessage BusObject::readProperty(const QDBusMessage& message) const {
    const QVariantList arguments = message.arguments();
    const bool isGet =
        message.member() == QLatin1StringView("Get") && message.signature() == QLatin1StringView("ss");
    const bool isGetAll =
        message.member() == QLatin1StringView("GetAll") && message.signature() == QLatin1StringView("s");
    const bool isSet =
        message.member() == QLatin1StringView("Set") && message.signature() == QLatin1StringView("ssv");
    if (!isGet && !isGetAll && !isSet) {
        return {};
    }

    const QString interface = arguments.at(0).toString();
    if (!interface.isEmpty() && interface != interface_) {
        return message.createErrorReply(unknownInterfaceError, QStringLiteral("no such interface here"));
    }
    if (isGetAll) {
        QVariantMap all;
        for (const auto& [name, getter] : properties_) {
            if (QVariant value = getter(); value.isValid()) {
                all.insert(name, std::move(value));
            }
        }
        return message.createReply(all);
    }
    const auto found = properties_.find(arguments.at(1).toString());
    const QVariant value = found != properties_.end() ? found->second() : QVariant();
    if (!value.isValid()) {
        return message.createErrorReply(unknownPropertyError, QStringLiteral("no such property here"));
    }
    if (isSet) {
        return message.createErrorReply(readOnlyError, QStringLiteral("the property cannot be set"));
    }
    return message.createReply(QVariant::fromValue(QDBusVariant(value)));
}

}  // namespace kestro
