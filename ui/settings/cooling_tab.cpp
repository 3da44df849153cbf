#include "ui/settings/cooling_tab.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "ui/controls/composition.h"
#include "ui/controls/exclusive_group.h"
#include "ui/format/figure_text.h"
#include "ui/paint/hairline.h"
#include "ui/settings/fan_curve_studio.h"
#include "ui/settings/settings_parts.h"

#include <QPainter>

#include <algorithm>

namespace kestro {

namespace {

constexpr int fanRowHeight = 30;

/// A row with a hairline along its top.
class RuledRow : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintHairline(painter, 0, width(), 0);
    }
};

}  // namespace

CoolingTab::CoolingTab(const KestroServices& services) : SettingsPane(services) {
    add(hardwareCard());
    add(settings_parts::group("PERFORMANCE MODE", column(Spacing(10), profileButtons(), profileNote()).release()));
    add(new FanCurveStudio(services));
}

QWidget* CoolingTab::hardwareCard() {
    const TextStyle title{12, 17, text_styles::w700, 0.9, KestroTheme::textPrimary};
    fanList_ = column().release();
    QWidget* content =
        column(Insets{12, 10, 12, 0}, text(QString()).style(title).into(hardware_),
               text(QString()).style(text_styles::settingDescription).into(hardwareLine_), space(9), fanList_)
            .release();
    const FanControlManager& manager = services().fanManager;
    follow([this] { showHardware(); }, manager.fanCount);
    follow([this] { showFans(); }, services().engine.fans, manager.currentFans);
    return new Card(content, nullptr);
}

CoolingTab::FanRow CoolingTab::fanRow() const {
    constexpr int nameWidth = 72;
    TextStyle name = text_styles::settingTitle;
    name.size = 11.5;
    name.ink = KestroTheme::textSecondary;
    TextStyle speed = text_styles::settingTitle;
    speed.weight = text_styles::w600;
    TextStyle limit = name;
    limit.size = 11;
    FanRow fan;
    fan.widget = new RuledRow;
    fan.widget->setFixedHeight(fanRowHeight);
    auto* layout = new QHBoxLayout(fan.widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(row(Spacing(12), symbol("fanblades.fill", 12, KestroTheme::accentCool),
                          text(QString()).style(name).width(nameWidth).into(fan.name), space(10),
                          text(QString()).style(speed).into(fan.speed), spacer(),
                          text(QString()).style(limit).into(fan.limit))
                          .release());
    return fan;
}

void CoolingTab::showHardware() {
    const auto count = static_cast<std::size_t>(std::max<std::int64_t>(0, services().fanManager.fanCount.get()));
    hardware_->setText(count == 0 ? QStringLiteral("PASSIVE ACOUSTIC ARCHITECTURE")
                                  : QStringLiteral("%1 ACTIVE SILICON TURBINES").arg(count));
    hardwareLine_->setText(count == 0
                               ? QString::fromUtf8("Fanless MacBook Air Design · 0.0 dB Acoustic Floor")
                               : QStringLiteral("Independent AppleSMC tachometers with dynamic PWM curves"));
    while (fanRows_.size() > count) {
        delete fanRows_.back().widget;
        fanRows_.pop_back();
    }
    while (fanRows_.size() < count) {
        fanRows_.push_back(fanRow());
        fanList_->layout()->addWidget(fanRows_.back().widget);
    }
    showFans();
}

void CoolingTab::showFans() {
    const auto& fans = liveFans(services());
    for (std::size_t i = 0; i < std::min(fanRows_.size(), fans.size()); ++i) {
        fanRows_[i].name->setText(QString::fromStdString(fans[i].name));
        fanRows_[i].speed->setText(wholeText(fans[i].currentRPM) + QStringLiteral(" RPM"));
        fanRows_[i].limit->setText(QStringLiteral("Safe: ") + wholeText(fans[i].maxRPM));
    }
}

QWidget* CoolingTab::profileButtons() {
    FanControlManager& manager = services().fanManager;
    QWidget* widget = row(Spacing(8)).release();
    auto* layout = static_cast<QHBoxLayout*>(widget->layout());
    std::vector<Button*> buttons;
    for (const FanProfile profile : allCases<FanProfile>()) {
        auto* option = new Button(ButtonKind::choice);
        option->setHeight(34);
        option->setSymbol(Words(iconName(profile)), 12);
        option->setText(Words(rawValue(profile)));
        option->setHelp(Words(description(profile)));
        option->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        option->onClick([this, profile] { chooseProfile(profile); });
        layout->addWidget(option, 1);
        buttons.push_back(option);
        if (profile == FanProfile::custom) {
            custom_ = option;
        }
    }
    auto* options = new ExclusiveGroup({buttons.begin(), buttons.end()}, widget);
    const auto& profile = manager.currentProfile;
    follow([options, &profile] { options->setChosen(static_cast<int>(profile.get())); }, profile);
    return widget;
}

QWidget* CoolingTab::profileNote() {
    FanControlManager& manager = services().fanManager;
    TextLabel* note = nullptr;
    TextStyle style = text_styles::settingDescription;
    style.size = 11;
    engage_ = new Button(ButtonKind::regular);
    engage_->setText(QStringLiteral("Engage Custom Curves"));
    engage_->onClick([this] { chooseProfile(FanProfile::custom); });
    QWidget* content = row(Insets{12, 0, 6, 0}, Spacing(10), symbol("info.circle", 12, KestroTheme::accentCool),
                           text(QString()).style(style).into(note), spacer(), engage_)
                           .release();
    content->setFixedHeight(38);
    note_ = new Card(content, this);  // a widget without a parent would show as a window
    follow(
        [this, note, &manager] {
            const FanProfile profile = manager.currentProfile.get();
            const bool isCustom = profile == FanProfile::custom;
            note->setText(QStringLiteral("Active Profile: ") + QString(Words(rawValue(profile))) +
                          (isCustom ? QStringLiteral(". The curves below apply.")
                                    : QStringLiteral(". Modifying curves below engages Custom Curves mode.")));
            if (isCustom) {
                moveFocusFromNote();
            }
            engage_->setVisible(!isCustom);
            // An edit of a curve engages them too. Without the note everything would move under the pointer.
            note_->setHidden(isCustom && !note_->isVisible());
        },
        manager.currentProfile);
    return note_;
}

void CoolingTab::hideEvent(QHideEvent* event) {
    SettingsPane::hideEvent(event);
    note_->setHidden(services().fanManager.currentProfile.get() == FanProfile::custom);
}

void CoolingTab::moveFocusFromNote() {
    if (window()->focusWidget() == engage_) {
        // Qt would choose the switch that unlinks the fans.
        custom_->setFocus(engage_->showsFocus() ? Qt::TabFocusReason : Qt::OtherFocusReason);
    }
}

void CoolingTab::chooseProfile(FanProfile profile) {
    if (profile == FanProfile::custom) {
        moveFocusFromNote();
    }
    note_->setHidden(profile == FanProfile::custom);
    services().fanManager.setProfile(profile);
}

}  // namespace kestro
