#include "shell/linux/notifier/menu_object.h"

#include <QSet>

#include <optional>
#include <utility>

namespace kestro {

namespace {

// com.canonical.dbusmenu, version 3.
const char* const description = R"xml(
<interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/>
  <property name="TextDirection" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout">
    <arg name="parentId" type="i" direction="in"/>
    <arg name="recursionDepth" type="i" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="revision" type="u" direction="out"/>
    <arg name="layout" type="(ia{sv}av)" direction="out"/>
  </method>
  <method name="GetGroupProperties">
    <arg name="ids" type="ai" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="properties" type="a(ia{sv})" direction="out"/>
  </method>
  <method name="GetProperty">
    <arg name="id" type="i" direction="in"/>
    <arg name="name" type="s" direction="in"/>
    <arg name="value" type="v" direction="out"/>
  </method>
  <method name="Event">
    <arg name="id" type="i" direction="in"/>
    <arg name="eventId" type="s" direction="in"/>
    <arg name="data" type="v" direction="in"/>
    <arg name="timestamp" type="u" direction="in"/>
  </method>
  <method name="EventGroup">
    <arg name="events" type="a(isvu)" direction="in"/>
    <arg name="idErrors" type="ai" direction="out"/>
  </method>
  <method name="AboutToShow">
    <arg name="id" type="i" direction="in"/>
    <arg name="needUpdate" type="b" direction="out"/>
  </method>
  <method name="AboutToShowGroup">
    <arg name="ids" type="ai" direction="in"/>
    <arg name="updatesNeeded" type="ai" direction="out"/>
    <arg name="idErrors" type="ai" direction="out"/>
  </method>
  <signal name="ItemsPropertiesUpdated">
    <arg name="updatedProps" type="a(ia{sv})"/>
    <arg name="removedProps" type="a(ias)"/>
  </signal>
  <signal name="LayoutUpdated">
    <arg name="revision" type="u"/>
    <arg name="parent" type="i"/>
  </signal>
  <signal name="ItemActivationRequested">
    <arg name="id" type="i"/>
    <arg name="timestamp" type="u"/>
  </signal>
</interface>
)xml";

/// More entries or names than any menu has: a caller that sends more is not a host.
constexpr qsizetype longestList = 4096;

/// An argument that is an array, or nullopt for one of too many elements, which is not read to its end.
template <typename Element>
std::optional<QList<Element>> boundedList(const QVariant& value) {
    const auto argument = value.value<QDBusArgument>();
    QList<Element> list;
    argument.beginArray();
    while (!argument.atEnd() && list.size() <= longestList) {
        Element element{};
        argument >> element;
        list.append(element);
    }
    argument.endArray();
    return list.size() <= longestList ? std::optional(list) : std::nullopt;
}

/// The names in a list; nullopt: too many.
std::optional<QSet<QString>> boundedNames(const QVariant& value) {
    const QStringList names = value.toStringList();
    return names.size() <= longestList ? std::optional(QSet<QString>(names.cbegin(), names.cend())) : std::nullopt;
}

BusRefusal unknownEntry() {
    return {QStringLiteral("no such menu entry")};
}
BusRefusal tooLong() {
    return {QStringLiteral("list too long")};
}

}  // namespace

MenuObject::MenuObject(std::function<Menu()> buildMenu, const QString& objectPath)
    : buildMenu_(std::move(buildMenu)),
      object_(objectPath, QStringLiteral("com.canonical.dbusmenu"), QString::fromLatin1(description)) {
    registerBusTypes();
    object_.addProperty(QStringLiteral("Version"), [] { return QVariant(3U); });
    object_.addProperty(QStringLiteral("TextDirection"), [] { return QVariant(QStringLiteral("ltr")); });
    object_.addProperty(QStringLiteral("Status"), [] { return QVariant(QStringLiteral("normal")); });
    object_.addProperty(QStringLiteral("IconThemePath"), [] { return QVariant(QStringList()); });
    addMethod("GetLayout", "iias", &MenuObject::getLayout);
    addMethod("GetGroupProperties", "aias", &MenuObject::getGroupProperties);
    addMethod("GetProperty", "is", &MenuObject::getProperty);
    addMethod("Event", "isvu", &MenuObject::receiveEvent);
    addMethod("EventGroup", "a(isvu)", &MenuObject::eventGroup);
    addMethod("AboutToShow", "i", &MenuObject::aboutToShow);
    addMethod("AboutToShowGroup", "ai", &MenuObject::aboutToShowGroup);
}

void MenuObject::addMethod(const char* name, const char* signature, Method method) {
    object_.addMethod(QString::fromLatin1(name), QString::fromLatin1(signature),
                      [this, method](const QVariantList& arguments) { return (this->*method)(arguments); });
}

BusReply MenuObject::getLayout(const QVariantList& arguments) {
    const auto names = boundedNames(arguments.at(2));
    if (!names) {
        return tooLong();
    }
    ensureBuilt();
    const auto layout = tree_.layout(arguments.at(0).toInt(), arguments.at(1).toInt(), *names);
    if (!layout) {
        return unknownEntry();
    }
    return QVariantList{tree_.revision(), QVariant::fromValue(*layout)};
}

BusReply MenuObject::getGroupProperties(const QVariantList& arguments) {
    const auto asked = boundedList<int>(arguments.at(0));
    const auto names = boundedNames(arguments.at(1));
    if (!asked || !names) {
        return tooLong();
    }
    ensureBuilt();
    const std::vector<int> ids =
        asked->isEmpty() ? tree_.identifiers() : std::vector<int>(asked->cbegin(), asked->cend());
    QList<MenuEntryProperties> found;
    QSet<int> answered;
    for (const int id : ids) {
        const MenuTree::Entry* entry = tree_.find(id);
        if (entry != nullptr && !answered.contains(id)) {
            answered.insert(id);
            found.append({id, MenuTree::selected(entry->properties, *names)});
        }
    }
    return QVariantList{QVariant::fromValue(found)};
}

BusReply MenuObject::getProperty(const QVariantList& arguments) {
    ensureBuilt();
    const MenuTree::Entry* entry = tree_.find(arguments.at(0).toInt());
    if (entry == nullptr) {
        return unknownEntry();
    }
    const QString name = arguments.at(1).toString();
    if (!entry->properties.contains(name)) {
        return BusRefusal{QStringLiteral("no such property of this entry")};
    }
    return QVariantList{QVariant::fromValue(QDBusVariant(entry->properties.value(name)))};
}

BusReply MenuObject::receiveEvent(const QVariantList& arguments) {
    if (!handle(arguments.at(0).toInt(), arguments.at(1).toString())) {
        return unknownEntry();
    }
    return QVariantList{};
}

BusReply MenuObject::eventGroup(const QVariantList& arguments) {
    const auto events = boundedList<MenuEvent>(arguments.at(0));
    if (!events) {
        return tooLong();
    }
    QList<int> unknown;
    for (const MenuEvent& event : *events) {
        if (!handle(event.id, event.name)) {
            unknown.append(event.id);
        }
    }
    if (!events->isEmpty() && unknown.size() == events->size()) {
        return unknownEntry();
    }
    return QVariantList{QVariant::fromValue(unknown)};
}

BusReply MenuObject::aboutToShow(const QVariantList& arguments) {
    if (tree_.find(arguments.at(0).toInt()) == nullptr) {
        return unknownEntry();
    }
    // Some hosts announce only submenus.
    return QVariantList{rebuild()};
}

BusReply MenuObject::aboutToShowGroup(const QVariantList& arguments) {
    const auto ids = boundedList<int>(arguments.at(0));
    if (!ids) {
        return tooLong();
    }
    QList<int> known;
    QList<int> unknown;
    for (const int id : *ids) {
        (tree_.find(id) != nullptr ? known : unknown).append(id);
    }
    const bool hasNewLayout = !known.isEmpty() && rebuild();
    return QVariantList{QVariant::fromValue(hasNewLayout ? known : QList<int>()), QVariant::fromValue(unknown)};
}

void MenuObject::ensureBuilt() {
    if (!isBuilt_) {
        isBuilt_ = true;
        tree_.replace(buildMenu_ ? buildMenu_() : Menu());
    }
}

bool MenuObject::rebuild() {
    isBuilt_ = true;
    const MenuChange change = tree_.replace(buildMenu_ ? buildMenu_() : Menu());
    if (change.hasNewLayout) {
        object_.emitSignal(QStringLiteral("LayoutUpdated"), {tree_.revision(), 0});
    } else if (!change.updated.isEmpty() || !change.removed.isEmpty()) {
        object_.emitSignal(QStringLiteral("ItemsPropertiesUpdated"),
                           {QVariant::fromValue(change.updated), QVariant::fromValue(change.removed)});
    }
    return change.hasNewLayout;
}

bool MenuObject::handle(int id, const QString& event) {
    const MenuTree::Entry* entry = tree_.find(id);
    if (entry == nullptr) {
        return false;
    }
    if (event == QLatin1StringView("opened") && id == 0) {
        // Some hosts report an opening only through this event. Reply to it first.
        actions_.add(id, [this] { rebuild(); });
    }
    if (event == QLatin1StringView("clicked") && entry->isEnabled && entry->action) {
        // An action may open a window, end the process or destroy this menu. Reply to the host first.
        actions_.add(id, entry->action);
    }
    return true;
}

}  // namespace kestro
