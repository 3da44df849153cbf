#include "shell/linux/notifier/bus_types.h"

#include <QDBusMetaType>

namespace kestro {

namespace {

template <typename... Fields>
QDBusArgument& writeStructure(QDBusArgument& argument, const Fields&... fields) {
    argument.beginStructure();
    (argument << ... << fields);
    argument.endStructure();
    return argument;
}

template <typename... Fields>
const QDBusArgument& readStructure(const QDBusArgument& argument, Fields&... fields) {
    argument.beginStructure();
    (argument >> ... >> fields);
    argument.endStructure();
    return argument;
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap) {
    return writeStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap) {
    return readStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip) {
    return writeStructure(argument, toolTip.iconName, toolTip.iconPixmaps, toolTip.title, toolTip.text);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip) {
    return readStructure(argument, toolTip.iconName, toolTip.iconPixmaps, toolTip.title, toolTip.text);
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayoutNode& node) {
    return writeStructure(argument, node.id, node.properties, node.children);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayoutNode& node) {
    return readStructure(argument, node.id, node.properties, node.children);
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEntryProperties& entry) {
    return writeStructure(argument, entry.id, entry.properties);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEntryProperties& entry) {
    return readStructure(argument, entry.id, entry.properties);
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuRemovedProperties& entry) {
    return writeStructure(argument, entry.id, entry.names);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuRemovedProperties& entry) {
    return readStructure(argument, entry.id, entry.names);
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event) {
    return writeStructure(argument, event.id, event.name, event.data, event.timestamp);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event) {
    return readStructure(argument, event.id, event.name, event.data, event.timestamp);
}

void registerBusTypes() {
    static const bool registered = [] {
        qDBusRegisterMetaType<NotifierPixmap>();
        qDBusRegisterMetaType<NotifierPixmaps>();
        qDBusRegisterMetaType<NotifierToolTip>();
        qDBusRegisterMetaType<MenuLayoutNode>();
        qDBusRegisterMetaType<QList<MenuLayoutNode>>();
        qDBusRegisterMetaType<MenuEntryProperties>();
        qDBusRegisterMetaType<QList<MenuEntryProperties>>();
        qDBusRegisterMetaType<MenuRemovedProperties>();
        qDBusRegisterMetaType<QList<MenuRemovedProperties>>();
        qDBusRegisterMetaType<MenuEvent>();
        qDBusRegisterMetaType<QList<MenuEvent>>();
        qDBusRegisterMetaType<QList<QStringList>>();
        qDBusRegisterMetaType<QList<int>>();
        return true;
    }();
    Q_UNUSED(registered)
}

}  // namespace kestro
