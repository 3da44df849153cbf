#pragma once

#include <QImage>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>
#include <optional>
#include <vector>

#include "tests/desktop/desktop_session.h"

namespace kestro {

/// One entry of a menu as a host reads it over the bus.
struct HostMenuEntry {
    int id = 0;
    QVariantMap properties;
    std::vector<HostMenuEntry> children;

    QString label() const { return properties.value(QStringLiteral("label")).toString(); }
    bool isChecked() const { return properties.value(QStringLiteral("toggle-state"), 0).toInt() == 1; }

    /// The first entry below this one whose label (with "__" for "_") is that.
    const HostMenuEntry* find(const QString& wanted) const;
};

/// Kestro's status items seen from a host's side of the session bus.
class StatusItemClient {
public:
    explicit StatusItemClient(const DesktopSession& session) : session_(session) {}

    /// True while a panel is there that hosts items.
    bool hasHost() const;

    /// Bus names of the items that are registered with the present panel.
    QStringList items() const;

    /// Bus name of the registered item with that identifier; nothing while there is none.
    std::optional<QString> item(const QString& identifier) const;

    /// Waits for that item; an empty name when it does not come.
    QString waitForItem(const QString& identifier = QStringLiteral("kestro-main")) const;

    QVariant property(const QString& item, const QString& name) const;
    QString label(const QString& item) const { return property(item, QStringLiteral("XAyatanaLabel")).toString(); }

    /// The item's icon at that size, not premultiplied; null when the item offers none.
    QImage icon(const QString& item, int pixels) const;

    /// The whole menu, after announcing its opening.
    HostMenuEntry menu(const QString& item) const;

    /// Chooses an entry as a click does.
    void choose(const QString& item, int entry) const;

private:
    const DesktopSession& session_;
};

}  // namespace kestro
