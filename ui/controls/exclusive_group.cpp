#include "ui/controls/exclusive_group.h"

#include "ui/controls/control.h"

#include <QKeyEvent>

#include <algorithm>

namespace kestro {

ExclusiveGroup::ExclusiveGroup(std::vector<Control*> members, QObject* parent)
    : QObject(parent), members_(std::move(members)) {
    for (Control* member : members_) {
        member->installEventFilter(this);
    }
    setChosen(0);
}

void ExclusiveGroup::setChosen(int index) {
    const int count = static_cast<int>(members_.size());
    const int stop = index >= 0 && index < count ? index : 0;
    for (int i = 0; i < count; ++i) {
        members_[static_cast<size_t>(i)]->setFocusPolicy(i == stop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

bool ExclusiveGroup::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    int step = 0;
    switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            step = -1;
            break;
        case Qt::Key_Right:
        case Qt::Key_Down:
            step = 1;
            break;
        default:
            return false;
    }
    const auto place = std::ranges::find(members_, watched);
    const auto next = place - members_.begin() + step;
    if (next >= 0 && next < static_cast<std::ptrdiff_t>(members_.size())) {
        Control* neighbour = members_[static_cast<size_t>(next)];
        neighbour->setFocus(Qt::TabFocusReason);
        neighbour->click();
    }
    return true;
}

}  // namespace kestro
