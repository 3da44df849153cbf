#include "shell/macos/menu_translation.h"

#include <QKeySequence>

#include <memory>
#include <utility>
#include <vector>

namespace kestro {

namespace {

using Actions = std::vector<std::function<void()>>;

NativeMenuEntry nativeEntry(const MenuEntry& entry, Actions& actions) {
    NativeMenuEntry native;
    native.isSeparator = entry.kind == MenuEntry::Kind::separator;
    if (native.isSeparator) {
        return native;
    }
    native.title = entry.title.toStdString();
    native.symbol = entry.symbol.toStdString();
    native.keyEquivalent = keyEquivalent(entry.shortcut);
    native.isEnabled = entry.isEnabled && entry.kind == MenuEntry::Kind::action;
    native.isChecked = entry.isChecked;
    native.number = actions.size();
    actions.push_back(entry.action);
    for (const MenuEntry& inner : entry.submenu) {
        native.submenu.push_back(nativeEntry(inner, actions));
    }
    return native;
}

}  // namespace

KeyEquivalent keyEquivalent(const QString& shortcut) {
    const auto sequence = QKeySequence::fromString(shortcut, QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0].key() >= Qt::Key_Escape) {
        return {};
    }
    constexpr std::pair<Qt::KeyboardModifier, std::uint64_t> pairs[] = {{Qt::ControlModifier, commandModifier},
                                                                        {Qt::MetaModifier, controlModifier},
                                                                        {Qt::AltModifier, optionModifier},
                                                                        {Qt::ShiftModifier, shiftModifier}};
    KeyEquivalent equivalent{QString(QChar(static_cast<char16_t>(sequence[0].key()))).toLower().toStdString(), 0};
    for (const auto& [modifier, native] : pairs) {
        equivalent.modifiers |= sequence[0].keyboardModifiers().testFlag(modifier) ? native : 0;
    }
    return equivalent;
}

NativeMenu nativeMenu(const Menu& menu) {
    NativeMenu native;
    const auto actions = std::make_shared<Actions>();
    for (const MenuEntry& entry : menu) {
        native.entries.push_back(nativeEntry(entry, *actions));
    }
    native.choose = [actions](std::size_t number) {
        if (number < actions->size() && actions->at(number)) {
            actions->at(number)();
        }
    };
    return native;
}

}  // namespace kestro
