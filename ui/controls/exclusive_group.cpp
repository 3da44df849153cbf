#include "ui/controls/exclusive_group.h"

#include "ui/controls/control.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

namespace kestro {

ExclusiveGroup::ExclusiveGroup(std::vector<Control*> members, QObject* parent, GroupArrows arrows)
    : QObject(parent), members_(std::move(members)), arrows_(arrows) {
    for (Control* member : members_) {
        member->installEventFilter(this);
    }
    setStop(chosen_);
}

void ExclusiveGroup::setChosen(int index) {
    const int count = static_cast<int>(members_.size());
    chosen_ = index >= 0 && index < count ? index : 0;
    for (int i = 0; i < count; ++i) {
        members_[static_cast<size_t>(i)]->setOn(i == index);
    }
    setStop(chosen_);
}

bool ExclusiveGroup::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut &&
        std::ranges::find(members_, QApplication::focusWidget()) == members_.end()) {
        setStop(chosen_);
        return false;
    }
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            return goBy(-1, watched);
        case Qt::Key_Right:
        case Qt::Key_Down:
            return goBy(1, watched);
        default:
            return false;
    }
}

bool ExclusiveGroup::goBy(int step, const QObject* from) {
    const auto place = std::ranges::find(members_, from);
    const auto next = place - members_.begin() + step;
    if (next >= 0 && next < static_cast<std::ptrdiff_t>(members_.size())) {
        Control* neighbour = members_[static_cast<size_t>(next)];
        neighbour->setFocus(Qt::TabFocusReason);
        if (arrows_ == GroupArrows::choose) {
            neighbour->click();
        } else {
            // Otherwise the next Tab would stop at the chosen one before leaving the group.
            setStop(static_cast<int>(next));
        }
    }
    return true;
}

void ExclusiveGroup::setStop(int index) {
    for (int i = 0; i < static_cast<int>(members_.size()); ++i) {
        members_[static_cast<size_t>(i)]->setFocusPolicy(i == index ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

}  // namespace kestro
