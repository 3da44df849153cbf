#pragma once

#include <QMenu>

#include <functional>
#include <vector>

namespace kestro {

/// One entry of a menu. The title is plain text: "&" is literal.
struct MenuEntry {
    enum class Kind { action, separator, header };

    Kind kind = Kind::action;
    QString title;
    QString symbol;    ///< empty: none
    QString shortcut;  ///< shown at the right; empty: none
    bool isEnabled = true;
    bool isChecked = false;
    std::function<void()> action;    ///< empty: nothing happens
    std::vector<MenuEntry> submenu;  ///< not empty: the entry opens a submenu

    static MenuEntry separator();
    static MenuEntry header(const QString& title);
};

/// A glass menu in the program's own style. Keyboard handling, submenus, screen edges and accessibility come from
/// QMenu. Main thread.
class PopupMenu : public QMenu {
    Q_OBJECT

public:
    explicit PopupMenu(const std::vector<MenuEntry>& entries, QWidget* parent = nullptr);

    /// Opens with its top left corner at `position` (global) and deletes itself once closed. A chosen entry's
    /// action runs after that.
    void openAt(const QPoint& position);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void add(const MenuEntry& entry);
};

}  // namespace kestro
