#include "tests/support/fake_service.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QStringList>
#include <QVariantMap>

#include <stdexcept>
#include <utility>

namespace kestro::test {

namespace {

QString describeValue(const QVariant& value) {
    switch (value.metaType().id()) {
        case QMetaType::QString:
            return QLatin1Char('"') + value.toString() + QLatin1Char('"');
        case QMetaType::UInt:
            return QString::number(value.toUInt()) + QLatin1Char('u');
        default:
            break;
    }
    if (value.canConvert<QDBusVariant>()) {
        return QLatin1Char('<') + describeValue(value.value<QDBusVariant>().variant()) + QLatin1Char('>');
    }
    if (value.canConvert<QDBusArgument>()) {
        QVariantMap map;
        value.value<QDBusArgument>() >> map;
        map.remove(QStringLiteral("handle_token"));
        QStringList entries;
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            entries.push_back(entry.key() + QStringLiteral(": ") + describeValue(entry.value()));
        }
        return QLatin1Char('{') + entries.join(QStringLiteral(", ")) + QLatin1Char('}');
    }
    return value.toString();
}

}  // namespace

std::string describe(const QDBusMessage& message) {
    QStringList arguments;
    for (const auto& argument : message.arguments()) {
        arguments.push_back(describeValue(argument));
    }
    return (message.member() + QLatin1Char('(') + arguments.join(QStringLiteral(", ")) + QLatin1Char(')'))
        .toStdString();
}

class FakeService::Object final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() == QLatin1String("kestro.test")) {
            connection.send(message.createReply());
            return true;
        }
        const std::lock_guard lock(mutex);
        calls.push_back(describe(message));
        if (holding) {
            held.emplace_back(message, connection);
        } else {
            reply(message, connection);
        }
        return true;
    }

    /// The mutex must be held.
    void reply(const QDBusMessage& message, const QDBusConnection& connection) {
        const auto found = answers.find(message.member());
        connection.send(found == answers.end() ? message.createReply() : found->second(message));
    }

    mutable std::mutex mutex;
    Answers answers;
    std::vector<std::string> calls;
    std::vector<std::pair<QDBusMessage, QDBusConnection>> held;
    bool holding = false;
};

FakeService::FakeService(const QDBusConnection& connection, const QString& name, Answers answers)
    : connection_(connection), name_(name), object_(new Object) {
    if (!connection_.registerVirtualObject(QStringLiteral("/"), object_, QDBusConnection::SubPath)) {
        throw std::runtime_error("cannot register the fake service's object");
    }
    object_->answers = std::move(answers);
    object_->moveToThread(&thread_);
    appear();
    thread_.start();
}

void FakeService::settle(const QDBusConnection& sender) const {
    sender.call(QDBusMessage::createMethodCall(connection_.baseService(), QStringLiteral("/none"),
                                               QStringLiteral("kestro.test"), QStringLiteral("Settle")));
    QCoreApplication::processEvents();
}

FakeService::~FakeService() {
    connection_.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
    connection_.unregisterService(name_);
    thread_.quit();
    thread_.wait();
    delete object_;
}

void FakeService::answer(const QString& member, Answer answer) {
    const std::lock_guard lock(object_->mutex);
    object_->answers[member] = std::move(answer);
}

void FakeService::refuse(const QString& member, const QString& error) {
    answer(member,
           [error](const QDBusMessage& call) { return call.createErrorReply(error, QStringLiteral("refused")); });
}

void FakeService::hold(bool holding) {
    const std::lock_guard lock(object_->mutex);
    object_->holding = holding;
}

std::size_t FakeService::heldCalls() const {
    const std::lock_guard lock(object_->mutex);
    return object_->held.size();
}

void FakeService::answerHeld() {
    const std::lock_guard lock(object_->mutex);
    for (const auto& [message, connection] : std::exchange(object_->held, {})) {
        object_->reply(message, connection);
    }
}

void FakeService::vanish() {
    connection_.unregisterService(name_);
}

void FakeService::appear() {
    if (!connection_.registerService(name_)) {
        throw std::runtime_error("cannot own the fake service's name");
    }
}

std::vector<std::string> FakeService::calls() const {
    const std::lock_guard lock(object_->mutex);
    return object_->calls;
}

}  // namespace kestro::test
