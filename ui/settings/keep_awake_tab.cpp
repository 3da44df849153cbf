#include "ui/settings/keep_awake_tab.h"

#include "core/power/keep_awake_manager.h"
#include "core/power/power_status.h"
#include "ui/controls/composition.h"
#include "ui/controls/exclusive_group.h"
#include "ui/format/figure_text.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/settings/settings_parts.h"
#include "ui/symbols/symbol_painter.h"

#include <QPainter>

#include <algorithm>
#include <array>

namespace kestro {

namespace {

constexpr SliderRange cutoffRange{5, 50, 5};
constexpr int cutoffLabelWidth = 110;

/// The cup in its circle: lit while the lock is held, empty while it is wanted but not held.
class CupDisc : public View {
public:
    static constexpr int diameter = 42;
    static constexpr double symbolSize = 20;

    CupDisc(const KeepAwakeManager& manager, const PowerStatus& status) : manager_(manager), status_(status) {
        setFixedSize(diameter, diameter);
    }

    AccessibleInfo accessibleInfo() const override { return AccessibleInfo::decoration(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isActive = manager_.isActive.get();
        const bool isHeld = isActive && status_.keepAwake.get().isHeld;
        const Ink ink = isHeld ? KestroTheme::accentWarning : KestroTheme::textSecondary;
        const QRectF disc = rect();
        const double radius = disc.width() / 2;
        paintRounded(painter, disc, radius, ink.faded(0.15).color());
        kestroHairlineBorder(painter, disc, radius, ink.faded(0.35).color());
        const double inset = (diameter - symbolSize) / 2;
        const auto symbol =
            isActive && !isHeld ? QStringLiteral("cup.and.saucer") : QStringLiteral("cup.and.saucer.fill");
        SymbolPainter::paint(painter, symbol, disc.adjusted(inset, inset, -inset, -inset), ink.color());
    }

private:
    const KeepAwakeManager& manager_;
    const PowerStatus& status_;
};

struct Scope {
    KeepAwakeTarget target;
    const char* description;
};

constexpr std::array scopes{
    Scope{
        KeepAwakeTarget::systemOnly,
        "Allows screen to turn off normally while preserving background renders, network transfers, and compute"},
    Scope{KeepAwakeTarget::displayAndSystem, "Prevents both display dimming/sleep and core system hibernation"},
};

}  // namespace

KeepAwakeTab::KeepAwakeTab(const KestroServices& services) : SettingsPane(services) {
    add(statusCard());
    add(settings_parts::group("SLEEP PREVENTION SCOPE", scopeCard()));
    add(settings_parts::group("DEFAULT SESSION DURATION",
                              choice("Default Session Duration", 34, services.settings.defaultKeepAwakeDuration)));
    add(settings_parts::group("BATTERY AUTO-PROTECTION", batteryCard()));
}

QWidget* KeepAwakeTab::statusCard() {
    constexpr int height = 76;
    constexpr int padding = 16;
    const TextStyle heading{12, 17, text_styles::w700, 0.9, KestroTheme::textPrimary};
    const KeepAwakeManager& manager = services().keepAwake;
    cup_ = new CupDisc(manager, services().powerStatus);
    button_ = new Button(ButtonKind::regular);
    button_->setHeight(30);
    button_->setFixedWidth(124);
    button_->onClick([this] {
        if (services().keepAwake.isActive.get()) {
            services().keepAwake.deactivate();
        } else {
            services().keepAwake.activate(services().settings.defaultKeepAwakeDuration.get());
        }
    });
    QWidget* content =
        row(Insets{padding, 0, padding, 0}, cup_, space(14),
            column(text(QString()).style(heading).into(heading_),
                   row(Spacing(10), text(QString()).style(text_styles::settingTitle).into(line_),
                       text(QString()).style(text_styles::settingTitle).secondary().into(scope_), spacer())),
            spacer(), button_)
            .release();
    content->setFixedHeight(height);
    follow([this] { showStatus(); }, manager.isActive, manager.remainingSeconds, manager.targetMode,
           services().powerStatus.keepAwake);
    return new Card(content, nullptr);
}

void KeepAwakeTab::showStatus() {
    const KeepAwakeManager& manager = services().keepAwake;
    const bool isActive = manager.isActive.get();
    const KeepAwakeStatus& status = services().powerStatus.keepAwake.get();
    const QString activeHeading =
        status.isHeld ? QStringLiteral("KEEP-AWAKE ACTIVE") : QStringLiteral("KEEP-AWAKE NOT HELD");
    heading_->setText(isActive ? activeHeading : QStringLiteral("KEEP-AWAKE INACTIVE"));
    for (View* const view : std::initializer_list<View*>{heading_, line_, scope_, button_}) {
        view->setHelp(Words(status.note));
    }
    heading_->setInk(isActive ? KestroTheme::accentWarning : KestroTheme::textPrimary);
    line_->setText(isActive
                       ? QStringLiteral("Remaining: ") + QString::fromStdString(manager.formattedRemainingTime())
                       : QStringLiteral("Sleep timer follows macOS Energy Saver preferences"));
    line_->setInk(isActive ? KestroTheme::textPrimary : KestroTheme::textSecondary);
    scope_->setText(isActive ? QString(Words(rawValue(manager.targetMode.get()))) : QString());
    button_->setText(isActive ? QStringLiteral("Deactivate") : QStringLiteral("Activate Now"));
    button_->setKind(isActive ? ButtonKind::regular : ButtonKind::prominent);
    cup_->update();
}

QWidget* KeepAwakeTab::scopeCard() {
    constexpr int rowHeight = 52;
    std::vector<SettingRow*> rows;
    for (const Scope& scope : scopes) {
        auto* option = new SettingRow(RowMark::radio, Words(rawValue(scope.target)), rowHeight);
        option->setDescription(Words(scope.description));
        option->onClick([this, target = scope.target] { services().keepAwake.setTargetMode(target); });
        rows.push_back(option);
    }
    auto* card = new settings_parts::RowCard({rows.begin(), rows.end()});
    auto* options = new ExclusiveGroup({rows.begin(), rows.end()}, card);
    const auto& target = services().keepAwake.targetMode;
    follow(
        [options, &target] {
            const auto chosen = std::ranges::find(scopes, target.get(), &Scope::target);
            options->setChosen(static_cast<int>(chosen - scopes.begin()));
        },
        target);
    return card;
}

QWidget* KeepAwakeTab::batteryCard() {
    SettingRow* protection = switchRow("Deactivate When Battery Falls Below Threshold", 48,
                                       services().settings.keepAwakeAutoDisableOnBattery);
    protection->setDescription(QStringLiteral("Prevents unintended battery drain when MacBook is unplugged"));
    Setting<double>& threshold = services().settings.keepAwakeBatteryThreshold;
    auto* slider = new Slider(cutoffRange);
    slider->setAccessibleName(QStringLiteral("Cutoff Level:"));
    slider->setValueText(percentText);
    slider->onChanged([&threshold](double value) { threshold.set(value); });
    TextLabel* value = settings_parts::sliderValue();
    value->setFixedWidth(58);
    QWidget* cutoff =
        settings_parts::labelledRow("Cutoff Level:", cutoffLabelWidth, row(slider, value).release(), 44);
    follow(
        [slider, value, &threshold] {
            slider->setValue(threshold.get());
            value->setText(percentText(threshold.get()));
        },
        threshold);
    return new settings_parts::RowCard({protection, cutoff});
}

}  // namespace kestro
