#include "platform/desktop/bus_notifications.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QVariantMap>

#include <utility>

namespace kestro {

namespace {

constexpr int maximumEntries = 64;
constexpr qsizetype maximumKeyBytes = 256;
constexpr qsizetype maximumTextBytes = 4096;

/// The address of a notification on the bus.
struct SignalAddress {
    QString path;
    QString interface;
    QString member;
};

SignalAddress signalAddress(std::string_view name) {
    const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    const auto dot = text.lastIndexOf(QLatin1Char('.'));
    const QString interface = text.left(dot);
    return {QLatin1Char('/') + QString(interface).replace(QLatin1Char('.'), QLatin1Char('/')), interface,
            text.mid(dot + 1)};
}

QVariant toVariant(const NotificationValue& value) {
    struct Converter {
        QVariant operator()(std::monostate) const { return QString(); }
        QVariant operator()(bool truth) const { return truth; }
        QVariant operator()(double number) const { return number; }
        QVariant operator()(const std::string& text) const { return QString::fromStdString(text); }
    };
    return std::visit(Converter{}, value);
}

NotificationValue fromVariant(const QVariant& value) {
    switch (value.metaType().id()) {
        case QMetaType::Bool:
            return value.toBool();
        case QMetaType::UChar:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Double:
            return value.toDouble();
        case QMetaType::QString: {
            const QByteArray text = value.toString().toUtf8();
            return text.size() <= maximumTextBytes ? NotificationValue(text.toStdString()) : NotificationValue();
        }
        default:
            return {};
    }
}

}  // namespace

NotificationUserInfo notificationUserInfo(const QDBusMessage& signal) {
    if (signal.signature() != QLatin1String("a{sv}")) {
        return {};
    }
    const auto argument = signal.arguments().constFirst().value<QDBusArgument>();
    NotificationUserInfo userInfo;
    int entries = 0;
    argument.beginMap();
    while (!argument.atEnd() && ++entries <= maximumEntries) {
        QString key;
        QDBusVariant value;
        argument.beginMapEntry();
        argument >> key >> value;
        argument.endMapEntry();
        const QByteArray keyBytes = key.toUtf8();
        if (keyBytes.size() <= maximumKeyBytes) {
            userInfo.insert_or_assign(keyBytes.toStdString(), fromVariant(value.variant()));
        }
    }
    argument.endMap();  // frees what beginMap made
    return entries <= maximumEntries ? userInfo : NotificationUserInfo();
}

BusNotifications::BusNotifications(const QDBusConnection& sessionBus) : bus_(sessionBus) {
    // With a timer of zero length, other events are handled between two notifications.
    turn_.setSingleShot(true);
    connect(&turn_, &QTimer::timeout, this, &BusNotifications::deliverNext);
}

Subscription BusNotifications::observe(std::string_view name, Handler handler) {
    auto& observers = observers_[std::string(name)];
    if (!observers) {
        observers = std::make_unique<Observers>();
        const auto [path, interface, member] = signalAddress(name);
        bus_.connect(QString(), path, interface, member, this, SLOT(onSignal(QDBusMessage)));
    }
    return observers->subscribe(std::move(handler));
}

void BusNotifications::post(std::string_view name, const NotificationUserInfo& userInfo) {
    const auto [path, interface, member] = signalAddress(name);
    auto signal = QDBusMessage::createSignal(path, interface, member);
    if (!userInfo.empty()) {
        QVariantMap map;
        for (const auto& [key, value] : userInfo) {
            map.insert(QString::fromStdString(key), toVariant(value));
        }
        signal << map;
    }
    if (!bus_.isConnected() || !bus_.send(signal)) {
        queue({std::string(name), userInfo});
    }
}

void BusNotifications::onSignal(const QDBusMessage& message) {
    queue({(message.interface() + QLatin1Char('.') + message.member()).toStdString(),
           notificationUserInfo(message)});
}

void BusNotifications::queue(Notification notification) {
    waiting_.add(std::move(notification));
    if (!turn_.isActive()) {
        turn_.start(0);
    }
}

void BusNotifications::deliverNext() {
    const auto next = waiting_.take();
    if (!waiting_.isEmpty()) {
        turn_.start(0);
    }
    const auto found = next ? observers_.find(next->name) : observers_.end();
    if (found != observers_.end()) {
        found->second->announceWith([&](const Handler& handler) { handler(next->userInfo); });
    }
}

}  // namespace kestro
