#include "ui/controls/view.h"

#include "ui/controls/view_accessible.h"
#include "ui/paint/tooltip.h"

#include <QEvent>

namespace kestro {

View::View(QWidget* parent) : QWidget(parent) {
    installViewAccessibility();
}

void View::setHelp(const QString& help) {
    if (help != help_) {
        help_ = help;
        Tooltip::change(*this, help);
    }
}

AccessibleInfo View::accessibleInfo() const {
    AccessibleInfo info;
    info.name = accessibleName();
    info.description = accessibleDescription().isEmpty() ? help_ : accessibleDescription();
    return info;
}

void View::announceChecked() {
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void View::announceValue() {
    if (!QAccessible::isActive()) {
        return;
    }
    const AccessibleInfo info = accessibleInfo();
    QAccessibleValueChangeEvent event(this, info.range ? QVariant(info.range->value) : QVariant(info.value));
    QAccessible::updateAccessibility(&event);
}

void View::announceName() {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void View::announcePart(int index) {
    QAccessibleInterface* const self =
        QAccessible::isActive() ? QAccessible::queryAccessibleInterface(this) : nullptr;
    const int firstPart = self ? self->childCount() - static_cast<int>(accessibleParts().size()) : 0;
    QAccessibleInterface* const part = self && index >= 0 ? self->child(firstPart + index) : nullptr;
    if (part == nullptr) {
        return;
    }
    if (part->state().selectable) {
        QAccessibleEvent event(part, QAccessible::Selection);
        QAccessible::updateAccessibility(&event);
    } else {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(part, changed);
        QAccessible::updateAccessibility(&event);
    }
}

bool View::event(QEvent* event) {
    if (!help_.isEmpty()) {
        Tooltip::follow(*this, help_, *event);
    }
    return QWidget::event(event);
}

}  // namespace kestro
