#include "ui/settings/settings_pane.h"

#include <QVBoxLayout>

namespace kestro {

namespace {

constexpr int kGroupGap = 16;

}  // namespace

SettingsPane::SettingsPane(const KestroServices& services, QWidget* parent)
    : QWidget(parent), services_(services), stack_(new QVBoxLayout(this)) {
    stack_->setContentsMargins(0, 0, 0, 0);
    stack_->setSpacing(kGroupGap);
    stack_->addStretch(1);  // groups keep their height in a column that is taller
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
    for (Follower& follower : followers_) {
        if (std::exchange(follower.isStale, false)) {
            follower.show();
        }
    }
}

void SettingsPane::changed(std::size_t follower) {
    if (isVisible()) {
        followers_[follower].show();
    } else {
        followers_[follower].isStale = true;
    }
}

}  // namespace kestro
