#pragma once

#include "shell/linux/notifier/bus_types.h"
#include "shell/status_bar.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace kestro {

/// Escapes a title for com.canonical.dbusmenu, where "_" marks an access key.
QString menuLabel(const QString& title);

/// Converts a portable key sequence for com.canonical.dbusmenu: one list of modifiers and key per chord, such as
/// {{"Control", "d"}}. Empty for an empty or invalid sequence.
QList<QStringList> menuShortcut(const QString& portableSequence);

/// What an update of the menu changed.
struct MenuChange {
    bool hasNewLayout = false;  ///< entries were added, removed or changed their kind: identifiers are new
    QList<MenuEntryProperties> updated;    ///< otherwise: properties with new values
    QList<MenuRemovedProperties> removed;  ///< otherwise: properties reset to their defaults
};

/// A menu as numbered entries with properties in the form of com.canonical.dbusmenu. Entry 0 is the root.
/// Identifiers are never reused in a later layout, so that a late click cannot hit the wrong entry.
class MenuTree {
public:
    /// One entry; `action` is empty for the root, separators and submenus.
    struct Entry {
        int id = 0;
        QVariantMap properties;
        std::vector<int> children;
        std::function<void()> action;
        bool isEnabled = true;
    };

    MenuTree();

    /// Applies the menu's new state. Identifiers are kept while the shape of the menu is unchanged.
    MenuChange replace(const Menu& menu);

    /// The number of layouts since the start.
    uint revision() const { return revision_; }

    /// The entry with that identifier, or null. Valid until the next `replace`.
    const Entry* find(int id) const;

    /// All identifiers in ascending order, the root included.
    std::vector<int> identifiers() const;

    /// The entry and its descendants down to `depth` levels (−1: all), each with the named properties (no names:
    /// all). Absent for an unknown parent.
    std::optional<MenuLayoutNode> layout(int parent, int depth, const QSet<QString>& names) const;

    /// The named properties of an entry (no names: all).
    static QVariantMap selected(const QVariantMap& properties, const QSet<QString>& names);

private:
    using Entries = std::map<int, Entry>;

    void append(Entries& entries, int parent, const Menu& menu);
    bool refill(const std::vector<int>& ids, const Menu& menu, MenuChange& change);

    Entries entries_;
    int nextId_ = 1;
    uint revision_ = 0;
};

}  // namespace kestro
