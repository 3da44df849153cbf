#include "ui/controls/view_accessible.h"

#include "ui/controls/control.h"
#include "ui/controls/view.h"

#include <QAccessibleWidget>
#include <QPointer>

namespace kestro {

namespace {

QString textOf(const AccessibleInfo& info, QAccessible::Text kind) {
    switch (kind) {
        case QAccessible::Name:
            return info.name;
        case QAccessible::Description:
            return info.description == info.name ? QString() : info.description;
        case QAccessible::Value:
            return info.value;
        default:
            return {};
    }
}

void describe(QAccessible::State& state, const AccessibleInfo& info) {
    state.checkable = info.checked.has_value();
    state.checked = info.checked.value_or(false);
    state.selectable = info.selected.has_value();
    state.selected = info.selected.value_or(false);
    state.invisible = state.invisible || info.isDecoration;
}

/// The press action of both views and their parts.
class PressAction : public QAccessibleActionInterface {
public:
    QStringList actionNames() const override {
        return describedInfo().press ? QStringList{pressAction()} : QStringList();
    }
    void doAction(const QString& name) override {
        const auto press = describedInfo().press;
        if (press && name == pressAction()) {
            press();
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

protected:
    ~PressAction() override = default;
    virtual AccessibleInfo describedInfo() const = 0;
};

/// One painted part of a view, identified by its index, so it survives changes of the view.
class PartAccessible final : public QAccessibleInterface, public PressAction {
public:
    PartAccessible(View& view, int index) : view_(&view), index_(index) {}

    bool isValid() const override { return view_ && index_ < static_cast<int>(view_->accessibleParts().size()); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(view_); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QString text(QAccessible::Text kind) const override { return textOf(describedInfo(), kind); }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return describedInfo().role; }

    QRect rect() const override {
        if (!isValid()) {
            return {};
        }
        const QRect area = describedInfo().area;
        return {view_->mapToGlobal(area.topLeft()), area.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !view_ || !view_->isVisible();
        state.disabled = view_ && !view_->isEnabled();
        state.readOnly = true;
        describe(state, describedInfo());
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

protected:
    AccessibleInfo describedInfo() const override {
        if (!view_) {
            return {};
        }
        auto parts = view_->accessibleParts();
        return index_ < static_cast<int>(parts.size()) ? std::move(parts[static_cast<size_t>(index_)])
                                                       : AccessibleInfo();
    }

private:
    QPointer<View> view_;
    int index_;
};

/// The accessible interface of a view, from its accessibleInfo and accessibleParts.
class ViewAccessible final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit ViewAccessible(View& view) : QAccessibleWidget(&view), view_(view) {}

    ~ViewAccessible() override {
        for (const QAccessible::Id part : parts_) {
            QAccessible::deleteAccessibleInterface(part);
        }
    }

    QAccessible::Role role() const override { return view_.accessibleInfo().role; }

    QString text(QAccessible::Text kind) const override { return textOf(view_.accessibleInfo(), kind); }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const auto* control = qobject_cast<const Control*>(&view_);
        state.disabled = state.disabled || (control != nullptr && !control->isAvailable());
        describe(state, view_.accessibleInfo());
        return state;
    }

    int childCount() const override {
        return QAccessibleWidget::childCount() + static_cast<int>(view_.accessibleParts().size());
    }

    QAccessibleInterface* child(int index) const override {
        const int widgets = QAccessibleWidget::childCount();
        return index < widgets ? QAccessibleWidget::child(index) : part(index - widgets);
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const int widgets = QAccessibleWidget::childCount();
        for (qsizetype i = 0; i < parts_.size(); ++i) {
            if (QAccessible::accessibleInterface(parts_[i]) == child) {
                return widgets + static_cast<int>(i);
            }
        }
        return QAccessibleWidget::indexOfChild(child);
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        const auto parts = view_.accessibleParts();
        const QPoint local = view_.mapFromGlobal(QPoint(x, y));
        for (size_t i = 0; i < parts.size(); ++i) {
            if (parts[i].area.contains(local)) {
                return part(static_cast<int>(i));
            }
        }
        return QAccessibleWidget::childAt(x, y);
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && view_.accessibleInfo().range) {
            return static_cast<QAccessibleValueInterface*>(this);
        }
        return QAccessibleWidget::interface_cast(type);
    }

    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (view_.isEnabled() && view_.accessibleInfo().press) {
            names.prepend(pressAction());
        }
        return names;
    }

    void doAction(const QString& name) override {
        const auto press = view_.accessibleInfo().press;
        if (name == pressAction() && press && view_.isEnabled()) {
            press();
            return;
        }
        QAccessibleWidget::doAction(name);
    }

    QVariant currentValue() const override { return range().value; }
    QVariant maximumValue() const override { return range().maximum; }
    QVariant minimumValue() const override { return range().minimum; }
    QVariant minimumStepSize() const override { return range().step; }

    void setCurrentValue(const QVariant& value) override {
        if (const auto set = range().set; set && view_.isEnabled()) {
            set(value.toDouble());
        }
    }

private:
    AccessibleRange range() const { return view_.accessibleInfo().range.value_or(AccessibleRange{}); }

    QAccessibleInterface* part(int index) const {
        if (index < 0 || index >= static_cast<int>(view_.accessibleParts().size())) {
            return nullptr;
        }
        while (parts_.size() <= index) {
            auto* made = new PartAccessible(view_, static_cast<int>(parts_.size()));
            parts_.append(QAccessible::registerAccessibleInterface(made));
        }
        return QAccessible::accessibleInterface(parts_[index]);
    }

    View& view_;
    mutable QList<QAccessible::Id> parts_;
};

/// Qt gives a plain widget no role: here it is a window, or a group if it has a name.
QAccessibleInterface* makePlainInterface(QWidget& widget) {
    if (widget.isWindow()) {
        return new QAccessibleWidget(&widget, QAccessible::Window);
    }
    return widget.accessibleName().isEmpty() ? nullptr : new QAccessibleWidget(&widget, QAccessible::Grouping);
}

QAccessibleInterface* makeInterface(const QString& type, QObject* object) {
    if (auto* view = qobject_cast<View*>(object)) {
        return new ViewAccessible(*view);
    }
    auto* widget = qobject_cast<QWidget*>(object);
    const bool isPlain = type == QLatin1StringView(QWidget::staticMetaObject.className());
    return widget && isPlain ? makePlainInterface(*widget) : nullptr;
}

}  // namespace

void installViewAccessibility() {
    // Qt does not check the list of factories for duplicates.
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled);
}

}  // namespace kestro
