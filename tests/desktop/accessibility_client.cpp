#include "tests/desktop/accessibility_client.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace kestro {

namespace {

// The assistive technology service provider interface, as at-spi2-core describes it.
const QString busService = QStringLiteral("org.a11y.Bus");
const QString busPath = QStringLiteral("/org/a11y/bus");
const QString registryService = QStringLiteral("org.a11y.atspi.Registry");
const QString registryPath = QStringLiteral("/org/a11y/atspi/registry");
const QString rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr int checkedState = 4;
constexpr int focusableState = 11;
constexpr int showingState = 25;

QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("accessibility-%1").arg(++count);
}

QVariant firstOf(const QDBusMessage& reply) {
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() ? reply.arguments().at(0)
                                                                                      : QVariant();
}

}  // namespace

const SpokenObject* SpokenObject::find(const QString& start) const {
    for (const SpokenObject* object : all()) {
        if (object != this && object->name.startsWith(start)) {
            return object;
        }
    }
    return nullptr;
}

std::vector<const SpokenObject*> SpokenObject::all() const {
    std::vector<const SpokenObject*> found{this};
    for (const SpokenObject& child : children) {
        const auto below = child.all();
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

AccessibilityClient::AccessibilityClient(const DesktopSession& session) : connectionName_(nextConnectionName()) {
    session.call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("StartServiceByName"),
                 {busService, QVariant::fromValue(0U)});
    const QString address =
        firstOf(session.call(busService, busPath, busService, QStringLiteral("GetAddress"))).toString();
    session.call(
        busService, busPath, properties, QStringLiteral("Set"),
        {QStringLiteral("org.a11y.Status"), QStringLiteral("IsEnabled"), QVariant::fromValue(QDBusVariant(true))});
    QDBusConnection::connectToBus(address, connectionName_);
}

AccessibilityClient::~AccessibilityClient() {
    QDBusConnection::disconnectFromBus(connectionName_);
}

std::optional<SpokenObject> AccessibilityClient::program() const {
    for (SpokenObject& one : readChildren(registryService, rootPath)) {
        if (one.name == QStringLiteral("Kestro")) {
            return std::move(one);
        }
    }
    return std::nullopt;
}

std::vector<SpokenObject> AccessibilityClient::shownIn(const QString& window) const {
    std::vector<SpokenObject> shown;
    const auto kestro = program();
    for (const SpokenObject& one : kestro ? kestro->children : std::vector<SpokenObject>()) {
        for (const SpokenObject* object : one.all()) {
            if (one.name == window && object->isShowing) {
                shown.push_back(*object);
            }
        }
    }
    return shown;
}

QRect AccessibilityClient::frame(const SpokenObject& object) const {
    constexpr uint screen = 0;
    const QVariant extents = firstOf(call(object.service, object.path, QStringLiteral("org.a11y.atspi.Component"),
                                          QStringLiteral("GetExtents"), {screen}));
    if (!extents.canConvert<QDBusArgument>()) {
        return {};
    }
    const auto area = extents.value<QDBusArgument>();
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    area.beginStructure();
    area >> left >> top >> width >> height;
    area.endStructure();
    return {left, top, width, height};
}

void AccessibilityClient::press(const SpokenObject& object) const {
    call(object.service, object.path, QStringLiteral("org.a11y.atspi.Action"), QStringLiteral("DoAction"), {0});
}

void AccessibilityClient::setValue(const SpokenObject& object, double value) const {
    call(object.service, object.path, properties, QStringLiteral("Set"),
         {QStringLiteral("org.a11y.atspi.Value"), QStringLiteral("CurrentValue"),
          QVariant::fromValue(QDBusVariant(value))});
}

void AccessibilityClient::listen() {
    const QString events = QStringLiteral("org.a11y.atspi.Event.Object");
    for (const char* member : {"StateChanged", "PropertyChange"}) {
        bus().connect(QString(), QString(), events, QString::fromLatin1(member), this,
                      SLOT(onChange(QDBusMessage)));
    }
    for (const char* event :
         {"object:state-changed", "object:selection-changed", "object:property-change:accessible-name",
          "object:property-change:accessible-value"}) {
        call(registryService, registryPath, registryService, QStringLiteral("RegisterEvent"),
             {QString::fromLatin1(event), QStringList(), QString()});
    }
}

void AccessibilityClient::onChange(const QDBusMessage& event) {
    const QVariantList arguments = event.arguments();
    if (arguments.size() >= 2) {
        heard_.push_back({event.path(), arguments.at(0).toString(), arguments.at(1).toInt() == 1});
    }
}

QDBusMessage AccessibilityClient::call(const QString& service, const QString& path, const QString& interface,
                                       const QString& method, const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return bus().call(message);
}

SpokenObject AccessibilityClient::read(const QString& service, const QString& path) const {
    SpokenObject object;
    object.service = service;
    object.path = path;
    object.role = firstOf(call(service, path, accessible, QStringLiteral("GetRoleName"))).toString();
    object.name =
        firstOf(call(service, path, properties, QStringLiteral("Get"), {accessible, QStringLiteral("Name")}))
            .value<QDBusVariant>()
            .variant()
            .toString();
    QList<uint> states;
    firstOf(call(service, path, accessible, QStringLiteral("GetState"))).value<QDBusArgument>() >> states;
    const auto has = [&](int state) { return !states.isEmpty() && (states.at(0) >> state & 1U) != 0; };
    object.isShowing = has(showingState);
    object.isChecked = has(checkedState);
    object.isFocusable = has(focusableState);
    if (object.isShowing || object.role == QStringLiteral("application")) {
        object.children = readChildren(service, path);
    }
    return object;
}

std::vector<SpokenObject> AccessibilityClient::readChildren(const QString& service, const QString& path) const {
    std::vector<SpokenObject> children;
    const QVariant reply = firstOf(call(service, path, accessible, QStringLiteral("GetChildren")));
    if (!reply.canConvert<QDBusArgument>()) {
        return children;
    }
    const auto list = reply.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString childService;
        QDBusObjectPath childPath;
        list.beginStructure();
        list >> childService >> childPath;
        list.endStructure();
        children.push_back(read(childService, childPath.path()));
    }
    list.endArray();
    return children;
}

}  // namespace kestro
