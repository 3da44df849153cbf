#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace kestro {

/// One size of an icon as `(iiay)`: 32-bit ARGB rows in network byte order, not premultiplied.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;

    friend bool operator==(const NotifierPixmap&, const NotifierPixmap&) = default;
};
using NotifierPixmaps = QList<NotifierPixmap>;

/// `(sa(iiay)ss)`. Hosts parse `text` as markup.
struct NotifierToolTip {
    QString iconName;
    NotifierPixmaps iconPixmaps;
    QString title;
    QString text;
};

/// One node of a menu's layout, `(ia{sv}av)`; the children are nodes wrapped in variants.
struct MenuLayoutNode {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

/// The properties of one menu entry, `(ia{sv})`.
struct MenuEntryProperties {
    int id = 0;
    QVariantMap properties;
};

/// The names of properties that were reset to their defaults, `(ias)`.
struct MenuRemovedProperties {
    int id = 0;
    QStringList names;
};

/// One event that a host reports about a menu entry, `(isvu)`.
struct MenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayoutNode& node);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayoutNode& node);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuEntryProperties& entry);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEntryProperties& entry);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuRemovedProperties& entry);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuRemovedProperties& entry);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event);

/// Registers the types above with Qt's bus binding; costs nothing after the first call.
void registerBusTypes();

}  // namespace kestro

Q_DECLARE_METATYPE(kestro::NotifierPixmap)
Q_DECLARE_METATYPE(kestro::NotifierToolTip)
Q_DECLARE_METATYPE(kestro::MenuLayoutNode)
Q_DECLARE_METATYPE(kestro::MenuEntryProperties)
Q_DECLARE_METATYPE(kestro::MenuRemovedProperties)
Q_DECLARE_METATYPE(kestro::MenuEvent)
