#include "ui/settings/settings_pane.h"

#include "ui/controls/on_screen.h"

#include <QEvent>
#include <QVBoxLayout>

namespace kestro {

namespace {

constexpr int groupGap = 16;

}  // namespace

SettingsPane::SettingsPane(const KestroServices& services, QWidget* parent)
    : QWidget(parent), services_(services), stack_(new QVBoxLayout(this)) {
    stack_->setContentsMargins(0, 0, 0, 0);
    stack_->setSpacing(groupGap);
    stack_->addStretch(1);  // groups keep their height in a taller column
}

void SettingsPane::add(QWidget* group) {
    stack_->insertWidget(stack_->count() - 1, group);
}

void SettingsPane::addRoom(int height) {
    stack_->insertSpacing(stack_->count() - 1, height);
}

SettingRow* SettingsPane::switchRow(const Words& title, int height, Setting<bool>& setting) {
    auto* row = new SettingRow(RowMark::toggle, title, height);
    row->onToggled([&setting](bool isOn) { setting.set(isOn); });
    follow([row, &setting] { row->setOn(setting.get()); }, setting);
    return row;
}

void SettingsPane::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    window()->installEventFilter(this);
    catchUp();
}

bool SettingsPane::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowStateChange) {
        catchUp();
    }
    return QWidget::eventFilter(watched, event);
}

void SettingsPane::catchUp() {
    if (!isOnScreen(*this)) {
        return;
    }
    for (Follower& follower : followers_) {
        if (std::exchange(follower.isStale, false)) {
            follower.show();
        }
    }
}

void SettingsPane::changed(std::size_t follower) {
    if (isOnScreen(*this)) {
        followers_[follower].show();
    } else {
        followers_[follower].isStale = true;
    }
}

}  // namespace kestro
