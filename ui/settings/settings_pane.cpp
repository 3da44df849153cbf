#include "ui/settings/settings_pane.h"

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

}  // namespace kestro
