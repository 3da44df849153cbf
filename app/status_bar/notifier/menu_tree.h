#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "app/status_bar/notifier/bus_types.h"
#include "app/status_bar/status_bar.h"

namespace kestro {

/// A title as com.canonical.dbusmenu wants it: hosts read "_" as the mark of an access key.
QString menuLabel(const QString& title);

/// A portable key sequence as com.canonical.dbusmenu wants it: one list of modifiers and key per chord, such
/// as {{"Control", "d"}}. Empty for an empty or unreadable sequence.
QList<QStringList> menuShortcut(const QString& portableSequence);

/// What a menu's new state changed.
struct MenuChange {
    bool hasNewLayout = false;             ///< entries came, went or changed their kind: identifiers are new
    QList<MenuEntryProperties> updated;    ///< else: properties that have new values
    QList<MenuRemovedProperties> removed;  ///< else: properties that went back to their defaults
};

/// A menu as numbered entries with properties in the form of com.canonical.dbusmenu. Entry 0 is the root. An
/// identifier is never used again for an entry of another layout, so that a late click cannot hit a stranger.
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

    /// Takes a menu's new state. Identifiers stay while the shape of the menu stays.
    MenuChange replace(const StatusMenu& menu);

    /// Counts the layouts since the start.
    uint revision() const { return revision_; }

    /// The entry of that identifier, or nothing. Valid until the next `replace`.
    const Entry* find(int id) const;

    /// All identifiers in ascending order, the root included.
    std::vector<int> identifiers() const;

    /// The entry and its descendants down to `depth` levels (−1: all), each with the named properties (none
    /// named: all). Nothing for an unknown parent.
    std::optional<MenuLayoutNode> layout(int parent, int depth, const QStringList& names) const;

    /// The named properties of an entry (none named: all).
    static QVariantMap selected(const QVariantMap& properties, const QStringList& names);

private:
    using Entries = std::map<int, Entry>;

    void append(Entries& entries, int parent, const StatusMenu& menu);
    bool refill(const std::vector<int>& ids, const StatusMenu& menu, MenuChange& change);

    Entries entries_;
    int nextId_ = 1;
    uint revision_ = 0;
};

}  // namespace kestro
