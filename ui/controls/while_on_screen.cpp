#include "ui/controls/while_on_screen.h"

#include <QWindowStateChangeEvent>

namespace kestro {

WhileOnScreen::WhileOnScreen(QWidget& owner, std::function<void()> catchUp)
    : owner_(owner), catchUp_(std::move(catchUp)) {
    owner.installEventFilter(this);
}

bool WhileOnScreen::eventFilter(QObject* watched, QEvent* event) {
    bool appears = false;
    if (event->type() == QEvent::Show && watched == &owner_) {
        owner_.window()->installEventFilter(this);
        appears = true;
    } else if (event->type() == QEvent::WindowStateChange) {
        appears = static_cast<QWindowStateChangeEvent*>(event)->oldState().testFlag(Qt::WindowMinimized);
    }
    if (appears && isOnScreen(owner_)) {
        catchUp_();
    }
    return false;
}

}  // namespace kestro
