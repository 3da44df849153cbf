#include "ui/controls/choice_bar.h"

#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

namespace kestro {

ChoiceBar::ChoiceBar(int chosen, Trigger trigger, QWidget* parent)
    : Control(parent), chosen_(chosen), trigger_(trigger) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ChoiceBar::take(int index) {
    const int before = std::exchange(chosen_, index);
    announcePart(before);
    announcePart(index);
    moveFocusRing();
    update();
}

void ChoiceBar::choose(int index) {
    const int before = chosen_;
    setChosen(index);
    if (chosen_ != before && onChosen_) {
        onChosen_(chosen_);
    }
}

void ChoiceBar::chooseNext(int step) {
    const int last = static_cast<int>(areas().size()) - 1;
    choose(std::clamp(chosen_ + step, 0, std::max(0, last)));
    showFocus();
}

bool ChoiceBar::event(QEvent* event) {
    if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter) {
        const int index = indexAt(static_cast<QHoverEvent*>(event)->position());
        if (index != hovered_) {
            hovered_ = index;
            update();
        }
    }
    return Control::event(event);
}

void ChoiceBar::mousePressEvent(QMouseEvent* event) {
    pressed_ = indexAt(event->position());
    Control::mousePressEvent(event);
    if (trigger_ == Trigger::press && event->button() == Qt::LeftButton && pressed_ >= 0) {
        choose(pressed_);
    }
}

void ChoiceBar::mouseReleaseEvent(QMouseEvent* event) {
    Control::mouseReleaseEvent(event);
    const int released = indexAt(event->position());
    const bool isSame = released >= 0 && released == pressed_;
    pressed_ = -1;
    if (trigger_ == Trigger::release && event->button() == Qt::LeftButton && isSame) {
        choose(released);
    }
}

void ChoiceBar::keyPressEvent(QKeyEvent* event) {
    const int count = static_cast<int>(areas().size());
    switch (event->key()) {
        case Qt::Key_Left:
            chooseNext(-1);
            break;
        case Qt::Key_Right:
            chooseNext(1);
            break;
        case Qt::Key_Home:
            chooseNext(-count);
            break;
        case Qt::Key_End:
            chooseNext(count);
            break;
        default:
            event->ignore();
            break;
    }
}

int ChoiceBar::indexAt(const QPointF& position) const {
    const auto all = areas();
    const auto found = std::ranges::find_if(all, [&](const QRectF& area) { return area.contains(position); });
    return found == all.end() ? -1 : static_cast<int>(found - all.begin());
}

}  // namespace kestro
