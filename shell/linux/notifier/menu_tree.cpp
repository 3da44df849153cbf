#include "shell/linux/notifier/menu_tree.h"

#include <QKeySequence>

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

constexpr QLatin1StringView typeKey("type");
constexpr QLatin1StringView labelKey("label");
constexpr QLatin1StringView enabledKey("enabled");
constexpr QLatin1StringView toggleTypeKey("toggle-type");
constexpr QLatin1StringView toggleStateKey("toggle-state");
constexpr QLatin1StringView shortcutKey("shortcut");
constexpr QLatin1StringView childrenKey("children-display");

bool isChoice(const MenuEntry& entry) {
    return entry.kind != MenuEntry::Kind::separator && entry.submenu.empty() &&
           (entry.isEnabled || entry.isChecked);
}

/// Which entries can have a check mark: adjacent choices, not split by a separator or a header, if one of them
/// is checked.
std::vector<bool> toggleFlags(const Menu& menu) {
    std::vector<bool> flags(menu.size(), false);
    for (std::size_t begin = 0; begin < menu.size();) {
        std::size_t end = begin;
        bool isAnyChecked = false;
        while (end < menu.size() && isChoice(menu[end])) {
            isAnyChecked = isAnyChecked || menu[end].isChecked;
            ++end;
        }
        std::fill(flags.begin() + static_cast<std::ptrdiff_t>(begin),
                  flags.begin() + static_cast<std::ptrdiff_t>(end), isAnyChecked);
        begin = end + 1;
    }
    return flags;
}

QVariantMap entryProperties(const MenuEntry& entry, bool isToggle) {
    QVariantMap properties;
    if (entry.kind == MenuEntry::Kind::separator) {
        properties.insert(typeKey, QStringLiteral("separator"));
        return properties;
    }
    properties.insert(labelKey, menuLabel(entry.title));
    if (!entry.isEnabled) {
        properties.insert(enabledKey, false);
    }
    if (isToggle) {
        properties.insert(toggleTypeKey, QStringLiteral("checkmark"));
        properties.insert(toggleStateKey, entry.isChecked ? 1 : 0);
    }
    if (const auto shortcut = menuShortcut(entry.shortcut); !shortcut.isEmpty()) {
        properties.insert(shortcutKey, QVariant::fromValue(shortcut));
    }
    if (!entry.submenu.empty()) {
        properties.insert(childrenKey, QStringLiteral("submenu"));
    }
    return properties;
}

QString chordKey(const QString& key) {
    if (key == QLatin1StringView("+")) {
        return QStringLiteral("plus");
    }
    if (key == QLatin1StringView("-")) {
        return QStringLiteral("minus");
    }
    return key.size() == 1 ? key.toLower() : key;
}

/// Also compares shortcuts, whose type QVariant itself cannot compare.
bool equalValues(const QVariant& left, const QVariant& right) {
    if (left.metaType() == QMetaType::fromType<QList<QStringList>>() && left.metaType() == right.metaType()) {
        return left.value<QList<QStringList>>() == right.value<QList<QStringList>>();
    }
    return left == right;
}

void compare(int id, const QVariantMap& before, const QVariantMap& after, MenuChange& change) {
    QVariantMap updated;
    QStringList removed;
    for (auto entry = after.cbegin(); entry != after.cend(); ++entry) {
        if (!before.contains(entry.key()) || !equalValues(before.value(entry.key()), entry.value())) {
            updated.insert(entry.key(), entry.value());
        }
    }
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        if (!after.contains(entry.key())) {
            removed.append(entry.key());
        }
    }
    if (!updated.isEmpty()) {
        change.updated.append({id, updated});
    }
    if (!removed.isEmpty()) {
        change.removed.append({id, removed});
    }
}

}  // namespace

QString menuLabel(const QString& title) {
    QString label = title;
    return label.replace(QLatin1Char('_'), QLatin1StringView("__"));
}

QList<QStringList> menuShortcut(const QString& portableSequence) {
    const auto sequence = QKeySequence::fromString(portableSequence, QKeySequence::PortableText);
    QList<QStringList> chords;
    for (int index = 0; index < sequence.count(); ++index) {
        const QKeyCombination chord = sequence[static_cast<uint>(index)];
        if (chord.key() == Qt::Key_unknown) {
            return {};
        }
        QStringList keys;
        const std::pair<Qt::KeyboardModifier, const char*> modifiers[] = {{Qt::ControlModifier, "Control"},
                                                                          {Qt::AltModifier, "Alt"},
                                                                          {Qt::ShiftModifier, "Shift"},
                                                                          {Qt::MetaModifier, "Super"}};
        for (const auto& [modifier, name] : modifiers) {
            if (chord.keyboardModifiers().testFlag(modifier)) {
                keys.append(QString::fromLatin1(name));
            }
        }
        keys.append(chordKey(QKeySequence(chord.key()).toString(QKeySequence::PortableText)));
        chords.append(keys);
    }
    return chords;
}

MenuTree::MenuTree() {
    replace({});
}

MenuChange MenuTree::replace(const Menu& menu) {
    MenuChange change;
    if (!entries_.empty() && refill(entries_.at(0).children, menu, change)) {
        return change;
    }
    entries_.clear();
    append(entries_, -1, menu);
    ++revision_;
    change = {};
    change.hasNewLayout = true;
    return change;
}

/// Updates the entries in `ids` to their new state; false as soon as the shapes differ.
bool MenuTree::refill(const std::vector<int>& ids, const Menu& menu, MenuChange& change) {
    if (ids.size() != menu.size()) {
        return false;
    }
    const std::vector<bool> toggles = toggleFlags(menu);
    for (std::size_t index = 0; index < menu.size(); ++index) {
        Entry& entry = entries_.at(ids[index]);
        const MenuEntry& source = menu[index];
        QVariantMap properties = entryProperties(source, toggles[index]);
        const auto differs = [&](QLatin1StringView key) {
            return properties.value(key).toString() != entry.properties.value(key).toString();
        };
        if (differs(typeKey) || differs(childrenKey) || differs(toggleTypeKey) ||
            !refill(entry.children, source.submenu, change)) {
            return false;
        }
        compare(entry.id, entry.properties, properties, change);
        entry.properties = std::move(properties);
        entry.action = source.action;
        entry.isEnabled = source.isEnabled;
    }
    return true;
}

void MenuTree::append(Entries& entries, int parent, const Menu& menu) {
    if (parent < 0) {
        Entry root;
        if (!menu.empty()) {
            root.properties.insert(childrenKey, QStringLiteral("submenu"));
        }
        entries.emplace(0, std::move(root));
        parent = 0;
    }
    const std::vector<bool> toggles = toggleFlags(menu);
    for (std::size_t index = 0; index < menu.size(); ++index) {
        const int id = nextId_++;
        entries[id] = {
            id, entryProperties(menu[index], toggles[index]), {}, menu[index].action, menu[index].isEnabled};
        entries.at(parent).children.push_back(id);
        append(entries, id, menu[index].submenu);
    }
}

const MenuTree::Entry* MenuTree::find(int id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : &found->second;
}

std::vector<int> MenuTree::identifiers() const {
    std::vector<int> ids;
    for (const auto& [id, entry] : entries_) {
        ids.push_back(id);
    }
    return ids;
}

std::optional<MenuLayoutNode> MenuTree::layout(int parent, int depth, const QSet<QString>& names) const {
    const Entry* entry = find(parent);
    if (entry == nullptr) {
        return std::nullopt;
    }
    MenuLayoutNode node{parent, selected(entry->properties, names), {}};
    if (depth != 0) {
        for (const int child : entry->children) {
            if (const auto below = layout(child, depth < 0 ? depth : depth - 1, names)) {
                node.children.append(QDBusVariant(QVariant::fromValue(*below)));
            }
        }
    }
    return node;
}

QVariantMap MenuTree::selected(const QVariantMap& properties, const QSet<QString>& names) {
    if (names.isEmpty()) {
        return properties;
    }
    QVariantMap chosen;
    for (auto property = properties.cbegin(); property != properties.cend(); ++property) {
        if (names.contains(property.key())) {
            chosen.insert(property.key(), property.value());
        }
    }
    return chosen;
}

}  // namespace kestro
