#include "ui/settings/power_tab.h"

#include "core/engine/telemetry_engine.h"
#include "core/power/power_mode_manager.h"
#include "core/power/power_status.h"
#include "ui/controls/badge.h"
#include "ui/controls/composition.h"
#include "ui/controls/exclusive_group.h"
#include "ui/format/figure_text.h"
#include "ui/format/record_text.h"
#include "ui/format/unmeasured.h"
#include "ui/settings/settings_parts.h"

#include <fmt/format.h>

#include <vector>

namespace kestro {

namespace {

constexpr double lowBattery = 20;

/// A power mode; the active one has a badge before its mark.
class PowerModeRow : public SettingRow {
public:
    explicit PowerModeRow(SystemPowerMode mode)
        : SettingRow(RowMark::chosen, Words(rawValue(mode)), 52),
          badge_(new Badge(BadgeKind::settings, QStringLiteral("ACTIVE"), KestroTheme::accentCool, this)) {
        setSymbol(Words(iconName(mode)), 16);
        setDescription(Words(description(mode)));
        setTrailingRoom(badge_->sizeHint().width() + settings_parts::rowInset);
        badge_->setAttribute(Qt::WA_TransparentForMouseEvents);
        badge_->hide();
    }

protected:
    void stateDidChange() override {
        SettingRow::stateDidChange();
        badge_->setVisible(isOn());
    }

    void resizeEvent(QResizeEvent* event) override {
        SettingRow::resizeEvent(event);
        constexpr int markRoom = settings_parts::rowInset + 16 + 14;
        const QSize size = badge_->sizeHint();
        badge_->setGeometry(width() - markRoom - size.width(), (height() - size.height()) / 2, size.width(),
                            size.height());
    }

private:
    Badge* badge_;
};

Ink batteryInk(const PowerTelemetry& power) {
    if (!power.hasBattery) {
        return KestroTheme::textSecondary;
    }
    return power.percentage <= lowBattery && !power.isCharging ? KestroTheme::accentCritical
                                                               : KestroTheme::accentNominal;
}

}  // namespace

QString batteryLine(const PowerTelemetry& power) {
    constexpr std::int64_t percentScale = 100;
    std::string line = power.statusDescription();
    if (power.hasBattery && power.maxCapacity > percentScale) {
        line += fmt::format(" · {} / {} mAh", power.currentCapacity, power.maxCapacity);
    }
    return QString::fromStdString(line);
}

PowerTab::PowerTab(const KestroServices& services) : SettingsPane(services) {
    add(batteryCard());
    add(settings_parts::group("SYSTEM POWER DELIVERY MODES", modesCard()));
}

QWidget* PowerTab::batteryCard() {
    constexpr int height = 84;
    constexpr int padding = 18;
    const TextStyle figure{34, 40, text_styles::w600, -0.6, KestroTheme::textPrimary};
    TextStyle health = text_styles::settingTitle;
    health.weight = text_styles::w600;
    QWidget* content = row(Insets{padding, 0, padding, 0}, text(QString()).style(figure).into(level_), space(18),
                           symbol("battery.100", 26).into(symbol_), spacer(),
                           column(Spacing(3), text(QString()).style(health).align(Qt::AlignRight).into(health_),
                                  text(QString())
                                      .style({11, 14, text_styles::w500, 0, KestroTheme::textSecondary})
                                      .align(Qt::AlignRight)
                                      .into(line_)))
                           .release();
    content->setFixedHeight(height);
    follow([this] { showBattery(); }, services().engine.power);
    return new Card(content, nullptr);
}

void PowerTab::showBattery() {
    const PowerTelemetry& power = services().engine.power.get();
    level_->setText(percentText(power.percentage));
    symbol_->setSymbol(powerSymbol(power));
    symbol_->setInk(batteryInk(power));
    health_->setText(QStringLiteral("Health Condition: ") + QString::fromStdString(power.condition));
    line_->setText(batteryLine(power));
    for (TextLabel* figure : {level_, health_}) {
        figure->setInk(figureInk(KestroTheme::textPrimary, power.hasBattery));
        figure->setHelp(power.hasBattery ? QString() : unmeasuredHelp());
    }
}

QWidget* PowerTab::modesCard() {
    PowerModeManager& manager = services().powerManager;
    std::vector<PowerModeRow*> rows;
    for (const SystemPowerMode mode : allCases<SystemPowerMode>()) {
        auto* option = new PowerModeRow(mode);
        option->onClick([&manager, mode] { manager.setPowerMode(mode); });
        rows.push_back(option);
    }
    auto* card = new settings_parts::RowCard({rows.begin(), rows.end()});
    // Each choice is a system request that may prompt for a password, so the arrows must not choose every row they
    // pass.
    auto* options = new ExclusiveGroup({rows.begin(), rows.end()}, card, GroupArrows::moveFocus);
    const auto& notes = services().powerStatus.powerModeNotes;
    follow(
        [rows, options, &manager, &notes] {
            for (std::size_t i = 0; i < rows.size(); ++i) {
                rows[i]->setHelp(Words(notes.get().at(i)));
            }
            options->setChosen(static_cast<int>(manager.currentMode.get()));
        },
        manager.currentMode, notes);
    return card;
}

}  // namespace kestro
