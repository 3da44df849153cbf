#include "ui/settings/fan_curve_studio.h"

#include "core/cooling/driving_temperature.h"
#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "ui/controls/composition.h"
#include "ui/controls/exclusive_group.h"
#include "ui/controls/toggle_switch.h"
#include "ui/format/figure_text.h"
#include "ui/settings/settings_parts.h"

#include <QVBoxLayout>

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace kestro {

namespace {

constexpr int studioGap = 10;
constexpr SliderRange lowRange{30, 65, 1};
constexpr SliderRange highRange{66, 100, 1};
constexpr SliderRange smoothingRange{0, 10, 0.5};
constexpr double ceilingStep = 100;
constexpr std::array selectorLabels{"Left Fan (CPU Exhaust)", "Right Fan (GPU Exhaust)"};

QString rpmText(double rpm) {
    return wholeText(rpm) + QStringLiteral(" RPM");
}

QString degreesText(double celsius) {
    return wholeText(celsius) + QString::fromUtf8("°C");
}

QString secondsText(double seconds) {
    return QString::fromStdString(fmt::format("{:.1f}s", seconds));
}

}  // namespace

std::int64_t editedFan(const KestroServices& services) {
    const bool isRight = services.settings.selectedFanIndex.get() == 1 && !services.fanManager.isLinked.get();
    return isRight ? 1 : 0;
}

const FanCurveConfig& activeEditingConfig(const KestroServices& services) {
    return editedFan(services) == 1 ? services.fanManager.rightCurve.get() : services.fanManager.leftCurve.get();
}

const std::vector<FanTelemetry>& liveFans(const KestroServices& services) {
    const auto& measured = services.engine.fans.get();
    return measured.empty() ? services.fanManager.currentFans.get() : measured;
}

bool isInForce(CurvePreset preset, const FanCurveConfig& config) {
    const FanCurveConfig made = applyTo(preset, config.minRPM, config.maxRPM);
    const bool hasItsCeiling =
        config.acousticCeilingEnabled == made.acousticCeilingEnabled &&
        (!made.acousticCeilingEnabled || config.acousticCeilingRPM == made.acousticCeilingRPM);
    return hasItsCeiling && config.sensorSource == made.sensorSource && config.curveShape == made.curveShape &&
           config.lowTemp == made.lowTemp && config.highTemp == made.highTemp;
}

FanCurveStudio::FanCurveStudio(const KestroServices& services) : SettingsPane(services) {
    stack().setSpacing(studioGap);
    constexpr int groupGap = 6;
    add(heading());
    add(fanSelector());
    add(presets());
    add(chart());
    addRoom(groupGap);
    constexpr std::array shapes{CurveShape::stepped, CurveShape::linear, CurveShape::sCurve};
    add(settings_parts::sideBySide(
        settings_parts::group("DRIVING TEMPERATURE SENSOR",
                              options(allCases<SensorSource>(), &FanCurveConfig::sensorSource)),
        settings_parts::group("RESPONSE CURVE GEOMETRY", options(shapes, &FanCurveConfig::curveShape))));
    addRoom(groupGap);
    add(settings_parts::group("THERMAL THRESHOLD ANCHORS", thresholds()));
    addRoom(groupGap);
    add(settings_parts::group("ACOUSTIC SMOOTHING & HYSTERESIS",
                              new settings_parts::RowCard({smoothing(), ceiling()}, Qt::Horizontal)));
}

template <typename Change>
void FanCurveStudio::edit(Change change) {
    FanCurveConfig config = activeEditingConfig(services());
    change(config);
    if (config == activeEditingConfig(services())) {
        return;  // choosing the current value again is no edit and keeps the preset active
    }
    services().fanManager.updateCurve(editedFan(services()), config);
}

template <typename Show>
void FanCurveStudio::followCurve(Show show) {
    const FanControlManager& manager = services().fanManager;
    follow([this, show] { show(activeEditingConfig(services())); }, manager.leftCurve, manager.rightCurve,
           manager.isLinked, services().settings.selectedFanIndex);
}

QWidget* FanCurveStudio::heading() {
    FanControlManager& manager = services().fanManager;
    TextStyle bold = text_styles::settingTitle;
    bold.weight = text_styles::w600;
    TextLabel* state = nullptr;
    auto* link = new ToggleSwitch;
    link->setAccessibleName(QStringLiteral("Fans Linked"));
    link->onToggled([&manager](bool) { manager.toggleLinking(); });
    QWidget* widget =
        row(Insets{2, 0, 0, 0},
            column(groupHeading("FAN CURVE STUDIO"),
                   text("Independently address Left and Right exhaust fans or synchronize in linked mode")
                       .style(text_styles::settingDescription)),
            spacer(), text(QString()).style(bold).into(state), space(10), link)
            .release();
    follow(
        [state, link, &manager] {
            const bool isLinked = manager.isLinked.get();
            state->setText(isLinked ? QStringLiteral("Fans Linked") : QStringLiteral("Independent Fans"));
            link->setOn(isLinked);
        },
        manager.isLinked);
    return widget;
}

QWidget* FanCurveStudio::fanSelector() {
    Setting<std::int64_t>& selected = services().settings.selectedFanIndex;
    const auto segments = [this] {
        const auto& fans = liveFans(services());
        std::vector<Segment> texts;
        for (std::size_t i = 0; i < selectorLabels.size(); ++i) {
            texts.push_back(
                {QString::fromUtf8(selectorLabels[i]), i < fans.size() ? rpmText(fans[i].currentRPM) : QString()});
        }
        return texts;
    };
    auto* selector = new SegmentedChoice(segments(), 32);
    selector->setAccessibleName(QStringLiteral("Fan"));
    selector->onChosen([&selected](int index) { selected.set(index); });
    follow([selector, &selected] { selector->setChosen(selected.get() == 1 ? 1 : 0); }, selected);
    follow([selector, segments] { selector->setSegments(segments()); }, services().engine.fans,
           services().fanManager.currentFans);
    return selector;
}

QWidget* FanCurveStudio::presets() {
    FanControlManager& manager = services().fanManager;
    auto* widget = row(Spacing(8), space(2), groupHeading("PRESETS:"), space(4)).release();
    auto* layout = static_cast<QHBoxLayout*>(widget->layout());
    std::vector<Button*> buttons;
    for (const CurvePreset preset : allCases<CurvePreset>()) {
        auto* option = new Button(ButtonKind::choice);
        option->setSymbol(Words(iconName(preset)), 11);
        option->setText(Words(rawValue(preset)));
        option->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        option->onClick([&manager, preset] { manager.applyPreset(preset); });
        layout->addWidget(option, 1);
        buttons.push_back(option);
    }
    // At start the manager reports an active preset without comparing it with the stored curves.
    follow(
        [this, buttons, &manager] {
            const auto active = manager.activePreset.get();
            const bool isLit = active && isInForce(*active, activeEditingConfig(services()));
            for (std::size_t i = 0; i < buttons.size(); ++i) {
                buttons[i]->setOn(isLit && static_cast<std::size_t>(*active) == i);
            }
        },
        manager.activePreset, manager.leftCurve, manager.rightCurve, manager.isLinked,
        services().settings.selectedFanIndex);
    return widget;
}

QWidget* FanCurveStudio::chart() {
    auto* canvas = new FanCurveCanvasView;
    QWidget* content = column(Insets{12, 10, 12, 6}, canvas).release();
    const FanControlManager& manager = services().fanManager;
    follow([this, canvas] { canvas->setReading(reading()); }, manager.leftCurve, manager.rightCurve,
           manager.isLinked, manager.currentFans, services().settings.selectedFanIndex, services().engine.fans,
           services().engine.thermals);
    return new Card(content, nullptr);
}

FanCurveReading FanCurveStudio::reading() const {
    FanCurveReading reading;
    const auto fan = static_cast<std::size_t>(editedFan(services()));
    const auto& fans = liveFans(services());
    reading.config = activeEditingConfig(services());
    reading.currentTemp = drivingTemperature(reading.config.sensorSource, services().engine.thermals.get());
    reading.isMeasured =
        fan < fans.size() &&
        isDrivingTemperatureMeasured(reading.config.sensorSource, services().engine.measured().temperatures);
    reading.currentRPM = fan < fans.size() ? fans[fan].currentRPM : 0;
    reading.targetRPM = reading.config.evaluateRPM(reading.currentTemp);
    reading.fanName = QString::fromUtf8(selectorLabels[fan]);
    reading.maxDisplayRPM = maxDisplayRPM(reading.config.maxRPM);
    return reading;
}

template <ClosedEnumeration E, std::size_t N>
QWidget* FanCurveStudio::options(const std::array<E, N>& cases, E FanCurveConfig::*field) {
    constexpr int rowHeight = 46;
    std::vector<SettingRow*> rows;
    for (const E value : cases) {
        auto* option = new SettingRow(RowMark::radio, Words(rawValue(value)), rowHeight);
        option->setDescription(Words(description(value)));
        option->setSymbol(Words(iconName(value)), 13);
        option->onClick(
            [this, field, value] { edit([field, value](FanCurveConfig& config) { config.*field = value; }); });
        rows.push_back(option);
    }
    auto* card = new settings_parts::RowCard({rows.begin(), rows.end()});
    auto* group = new ExclusiveGroup({rows.begin(), rows.end()}, card);
    followCurve([cases, field, group](const FanCurveConfig& config) {
        group->setChosen(static_cast<int>(std::ranges::find(cases, config.*field) - cases.begin()));
    });
    return card;
}

QWidget* FanCurveStudio::thresholds() {
    const auto anchor = [this](const char* label, const SliderRange& range, const char* description,
                               double FanCurveConfig::*field) {
        const auto block = settings_parts::sliderBlock(label, range, description);
        block.slider->setValueText(degreesText);
        block.slider->onChanged([this, field](double value) {
            edit([field, value](FanCurveConfig& config) { config.*field = value; });
        });
        followCurve([block, field](const FanCurveConfig& config) {
            block.slider->setValue(config.*field);
            block.value->setText(degreesText(config.*field));
        });
        return block.widget;
    };
    // The two ranges do not overlap, so the anchors cannot cross.
    return new settings_parts::RowCard(
        {anchor("Baseline Idle Temp (T_low):", lowRange,
                "Fan stays at minimum baseline speed below this temperature", &FanCurveConfig::lowTemp),
         anchor("Full Ramp Ceiling (T_high):", highRange,
                "Fan reaches maximum target RPM at or above this temperature", &FanCurveConfig::highTemp)},
        Qt::Horizontal);
}

QWidget* FanCurveStudio::smoothing() {
    Setting<double>& smoothing = services().settings.rampSmoothingSeconds;
    const auto block =
        settings_parts::sliderBlock("Ramp Smoothing Window:", smoothingRange,
                                    "Damps brief 1-2s spikes to eliminate fan hunting and whoosh cycles");
    block.slider->setValueText(secondsText);
    block.slider->onChanged([&smoothing](double value) { smoothing.set(value); });
    follow(
        [block, &smoothing] {
            block.slider->setValue(smoothing.get());
            block.value->setText(secondsText(smoothing.get()));
        },
        smoothing);
    return block.widget;
}

QWidget* FanCurveStudio::ceiling() {
    const QString label = QStringLiteral("Acoustic Ceiling Cap:");
    TextLabel* value = settings_parts::sliderValue();
    TextLabel* note = nullptr;
    auto* cap = new ToggleSwitch;
    cap->setAccessibleName(label);
    cap->onToggled(
        [this](bool isOn) { edit([isOn](FanCurveConfig& config) { config.acousticCeilingEnabled = isOn; }); });
    auto* slider = new Slider(SliderRange{0, 0, ceilingStep});
    slider->setAccessibleName(label);
    slider->setValueText(rpmText);
    slider->onChanged(
        [this](double rpm) { edit([rpm](FanCurveConfig& config) { config.acousticCeilingRPM = rpm; }); });
    QWidget* widget =
        column(Insets{12, 6, 12, 10},
               row(text(label).style(text_styles::settingTitle), spacer(), value, space(10), cap), slider,
               text("Unconstrained turbine ceiling (Full 100% capacity)")
                   .style(text_styles::settingDescription)
                   .into(note),
               spacer())
            .release();
    followCurve([value, note, cap, slider](const FanCurveConfig& config) {
        const bool isOn = config.acousticCeilingEnabled;
        cap->setOn(isOn);
        slider->setVisible(isOn);
        slider->setRange({config.minRPM, config.maxRPM, ceilingStep});
        slider->setValue(config.acousticCeilingRPM);
        value->setText(isOn ? rpmText(config.acousticCeilingRPM) : QString());
        note->setVisible(!isOn);
    });
    return widget;
}

}  // namespace kestro
