#pragma once

#include "tests/desktop/desktop_session.h"

#include <QImage>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <optional>
#include <vector>

namespace kestro {

/// One entry of a menu as a host reads it over the bus.
struct HostMenuEntry {
    int id = 0;
    QVariantMap properties;
    std::vector<HostMenuEntry> children;

    QString label() const { return properties.value(QStringLiteral("label")).toString(); }
    bool isChecked() const { return properties.value(QStringLiteral("toggle-state"), 0).toInt() == 1; }

    /// The first entry below this one with that label (with "__" for "_").
    const HostMenuEntry* find(const QString& wanted) const;
};

/// Kestro's status items seen from a host's side of the session bus.
class StatusItemClient {
public:
    explicit StatusItemClient(const DesktopSession& session) : session_(session) {}

    /// True while a panel that hosts items is running.
    bool hasHost() const;

    /// Bus names of the items registered with the current panel.
    QStringList items() const;

    /// Bus name of the registered item with that identifier; absent if there is none.
    std::optional<QString> item(const QString& identifier) const;

    /// Waits for that item; an empty name if it does not appear.
    QString waitForItem(const QString& identifier = QStringLiteral("kestro-main")) const;

    QVariant property(const QString& item, const QString& name) const;
    QString label(const QString& item) const { return property(item, QStringLiteral("XAyatanaLabel")).toString(); }

    /// Title and text of the item's tool tip, a line each.
    QString toolTip(const QString& item) const;

    /// The item's icon in that size, not premultiplied; null if the item has none.
    QImage icon(const QString& item, int pixels) const;

    /// The whole menu, read after announcing that it opens.
    HostMenuEntry menu(const QString& item) const;

    /// Chooses an entry, as a click does.
    void choose(const QString& item, int entry) const;

private:
    const DesktopSession& session_;
};

}  // namespace kestro
