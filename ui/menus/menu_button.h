#pragma once

#include "ui/controls/button.h"
#include "ui/menus/popup_menu.h"

namespace kestro {

/// A button that opens a menu below itself and rebuilds it each time. Space, Enter and Down open it too; closing
/// returns the focus to the button.
class MenuButton : public Button {
    Q_OBJECT

public:
    using MenuBuilder = std::function<Menu()>;

    explicit MenuButton(ButtonKind kind, MenuBuilder builder, QWidget* parent = nullptr);

protected:
    void activated() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void leaveUnlessUnderPointer();

    MenuBuilder builder_;
};

}  // namespace kestro
