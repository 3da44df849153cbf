#include "ui/settings/sensors_tab.h"

#include "core/base/program_version.h"
#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "ui/controls/badge.h"
#include "ui/controls/composition.h"
#include "ui/format/record_text.h"
#include "ui/settings/settings_parts.h"

#include <string>

namespace kestro {

namespace {

QString coolingSummary(std::int64_t fans) {
    if (fans <= 0) {
        return QStringLiteral("Passive Thermal Dissipation");
    }
    return fans == 1 ? QStringLiteral("1 Active Turbine") : QStringLiteral("%1 Active Turbines").arg(fans);
}

}  // namespace

SensorsTab::SensorsTab(const KestroServices& services) : SettingsPane(services) {
    const QString active = QStringLiteral("Active");
    const SensorRow platform =
        sensorRow("cpu", "Hardware Platform", services.engine.macModel(), "Silicon Verified");
    const SensorRow controller =
        sensorRow("fanblades", "AppleSMC Interface", "Direct IOServiceOpen (Client 0)", QString());
    const SensorRow sensors = sensorRow("thermometer.medium", "IOHIDEventSystemClient", QString(), active);
    const SensorRow processor = sensorRow("square.grid.2x2", "Host Processor Info", QString(), active);
    const SensorRow memory =
        sensorRow("memorychip", "Mach VM Subsystem", "64-bit Statistics + Swap Usage", active);
    const SensorRow power = sensorRow("bolt.batteryblock", "IOPowerSources", QString(), "IOPM Verified");
    followHardware(controller, sensors, processor, power);
    add(settings_parts::group("AUTHENTIC HARDWARE INTERFACES",
                              new settings_parts::RowCard({platform.widget, controller.widget, sensors.widget,
                                                           processor.widget, memory.widget, power.widget})));
    add(row(Insets{2, 0, 0, 0},
            text("Kestro " + std::string(programVersion())).style(text_styles::settingDescription))
            .release());
}

SensorsTab::SensorRow SensorsTab::sensorRow(const Words& symbolName, const Words& name, const Words& value,
                                            const Words& badge) const {
    constexpr int height = 54;
    TextStyle title = text_styles::settingTitle;
    title.weight = text_styles::w600;
    SensorRow sensor;
    sensor.badge = new Badge(BadgeKind::settings, badge, KestroTheme::accentNominal);
    sensor.widget =
        row(Insets{settings_parts::rowInset, 0, settings_parts::rowInset, 0}, symbol(symbolName, 16), space(14),
            column(text(name).style(title), text(value).style(text_styles::settingDescription).into(sensor.value)),
            spacer(), sensor.badge)
            .release();
    sensor.widget->setFixedHeight(height);
    return sensor;
}

void SensorsTab::followHardware(const SensorRow& controller, const SensorRow& sensors, const SensorRow& processor,
                                const SensorRow& power) {
    const TelemetryEngine& engine = services().engine;
    const auto& fanCount = services().fanManager.fanCount;
    follow([badge = controller.badge,
            &fanCount] { badge->setState(coolingSummary(fanCount.get()), KestroTheme::accentCool); },
           fanCount);
    follow(
        [sensors, &engine] {
            const std::int64_t count = engine.thermals.get().sensorCount;
            sensors.value->setText(count > 0 ? QStringLiteral("%1 Silicon Thermal Nodes").arg(count)
                                             : QStringLiteral("No temperature sensor answers on this machine"));
            sensors.badge->setState(count > 0 ? QStringLiteral("Active") : QStringLiteral("None"),
                                    count > 0 ? KestroTheme::accentNominal : KestroTheme::textSecondary);
        },
        engine.thermals);
    follow(
        [value = processor.value, &engine] {
            const CPUTelemetry& cpu = engine.cpu.get();
            value->setText(QStringLiteral("%1 Total Silicon Cores (").arg(cpu.coreCount) +
                           QString::fromStdString(presentClusters(cpu)) + QLatin1Char(')'));
        },
        engine.cpu);
    follow([value = power.value,
            &engine] { value->setText(QString::fromStdString(engine.power.get().statusDescription())); },
           engine.power);
}

}  // namespace kestro
