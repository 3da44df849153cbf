#include "tests/desktop/status_item_client.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QtEndian>

namespace kestro {

namespace {

const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString menuPath = QStringLiteral("/MenuBar");

HostMenuEntry readEntry(const QDBusArgument& argument) {
    HostMenuEntry entry;
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        entry.children.push_back(readEntry(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return entry;
}

}  // namespace

const HostMenuEntry* HostMenuEntry::find(const QString& wanted) const {
    for (const HostMenuEntry& child : children) {
        if (child.label() == wanted) {
            return &child;
        }
        if (const HostMenuEntry* below = child.find(wanted)) {
            return below;
        }
    }
    return nullptr;
}

bool StatusItemClient::hasHost() const {
    return session_.property(watcher, watcherPath, watcher, QStringLiteral("IsStatusNotifierHostRegistered"))
        .toBool();
}

QStringList StatusItemClient::items() const {
    QStringList names;
    const QStringList registered =
        session_.property(watcher, watcherPath, watcher, QStringLiteral("RegisteredStatusNotifierItems"))
            .toStringList();
    for (const QString& entry : registered) {
        // Some watchers append the object's path to the name.
        names.append(entry.section(QLatin1Char('/'), 0, 0));
    }
    return names;
}

std::optional<QString> StatusItemClient::item(const QString& identifier) const {
    for (const QString& name : items()) {
        if (property(name, QStringLiteral("Id")).toString() == identifier) {
            return name;
        }
    }
    return std::nullopt;
}

QString StatusItemClient::waitForItem(const QString& identifier) const {
    std::optional<QString> found;
    session_.waitFor([&] {
        found = item(identifier);
        return found.has_value();
    });
    return found.value_or(QString());
}

QVariant StatusItemClient::property(const QString& item, const QString& name) const {
    return session_.property(item, itemPath, itemInterface, name);
}

QString StatusItemClient::toolTip(const QString& item) const {
    const auto toolTip = property(item, QStringLiteral("ToolTip")).value<QDBusArgument>();
    QString icon;
    QString title;
    QString text;
    if (toolTip.currentSignature() != QLatin1String("(sa(iiay)ss)")) {
        return {};
    }
    toolTip.beginStructure();
    toolTip >> icon;
    toolTip.beginArray();
    while (!toolTip.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        toolTip.beginStructure();
        toolTip >> width >> height >> pixels;
        toolTip.endStructure();
    }
    toolTip.endArray();
    toolTip >> title >> text;
    toolTip.endStructure();
    return title + QLatin1Char('\n') + text;
}

QImage StatusItemClient::icon(const QString& item, int pixels) const {
    QImage found;
    const QVariant pixmaps = property(item, QStringLiteral("IconPixmap"));
    if (!pixmaps.canConvert<QDBusArgument>()) {
        return found;
    }
    const auto argument = pixmaps.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray bytes;
        argument.beginStructure();
        argument >> width >> height >> bytes;
        argument.endStructure();
        if (width == pixels && height == pixels && bytes.size() == qsizetype{4} * width * height) {
            found = QImage(width, height, QImage::Format_ARGB32);
            for (int row = 0; row < height; ++row) {
                qFromBigEndian<quint32>(bytes.constData() + qsizetype{4} * row * width, width,
                                        found.scanLine(row));
            }
        }
    }
    argument.endArray();
    return found;
}

HostMenuEntry StatusItemClient::menu(const QString& item) const {
    session_.call(item, menuPath, menuInterface, QStringLiteral("AboutToShow"), {0});
    const QDBusMessage reply =
        session_.call(item, menuPath, menuInterface, QStringLiteral("GetLayout"), {0, -1, QStringList()});
    if (reply.signature() != QLatin1StringView("u(ia{sv}av)")) {
        return {};
    }
    return readEntry(reply.arguments().at(1).value<QDBusArgument>());
}

void StatusItemClient::choose(const QString& item, int entry) const {
    session_.call(item, menuPath, menuInterface, QStringLiteral("Event"),
                  {entry, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(QString())), 0U});
}

}  // namespace kestro
