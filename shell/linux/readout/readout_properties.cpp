#include "shell/linux/readout/readout_properties.h"

#include <QDBusMetaType>
#include <QList>

#include <algorithm>

namespace kestro {

QDBusArgument& operator<<(QDBusArgument& argument, const BusKeepAwake& value) {
    argument.beginStructure();
    argument << value.isActive << value.remainingSeconds;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusKeepAwake& value) {
    argument.beginStructure();
    argument >> value.isActive >> value.remainingSeconds;
    argument.endStructure();
    return argument;
}

namespace readout_properties {

namespace {

/// The symbol's name in the icon theme.
const QString symbolIcon = QStringLiteral("kestro-symbolic");

QVariant keepAwake(const SharedReadout& readout) {
    BusKeepAwake value{readout.isKeepAwakeActive, 0};
    if (value.isActive) {
        value.remainingSeconds = readout.keepAwakeRemainingSeconds.value_or(-1);
    }
    return QVariant::fromValue(value);
}

/// The words of the power-profiles daemon.
QVariant powerMode(const SharedReadout& readout) {
    switch (readout.powerMode) {
        case SystemPowerMode::lowPower:
            return QStringLiteral("power-saver");
        case SystemPowerMode::balanced:
            return QStringLiteral("balanced");
        case SystemPowerMode::highPower:
            return QStringLiteral("performance");
    }
    return {};
}

QVariant number(const std::optional<std::int64_t>& figure) {
    return figure ? QVariant(static_cast<qlonglong>(*figure)) : QVariant();
}

QVariant fanSpeeds(const ReadoutFigures& figures) {
    if (!figures.fanSpeedsRpm) {
        return {};
    }
    return QVariant::fromValue(QList<qlonglong>(figures.fanSpeedsRpm->cbegin(), figures.fanSpeedsRpm->cend()));
}

template <auto member>
QVariant number(const ReadoutFigures& figures) {
    return number(figures.*member);
}

qint64 minutes(qint64 seconds) {
    return seconds < 0 ? -1 : seconds / 60;
}

}  // namespace

const std::vector<Property<SharedReadout>>& common() {
    static const bool isRegistered = [] {
        qDBusRegisterMetaType<BusKeepAwake>();
        return true;
    }();
    static const std::vector<Property<SharedReadout>> properties{
        {QStringLiteral("Text"), [](const SharedReadout& readout) { return QVariant(readout.text); }},
        {QStringLiteral("WidestText"), [](const SharedReadout& readout) { return QVariant(readout.widestText); }},
        {QStringLiteral("ToolTip"), [](const SharedReadout& readout) { return QVariant(readout.toolTip); }},
        {QStringLiteral("Symbol"),
         [](const SharedReadout& readout) { return QVariant(readout.hasSymbol ? symbolIcon : QString()); }},
        {QStringLiteral("KeepAwake"), keepAwake},
        {QStringLiteral("PowerMode"), powerMode},
    };
    Q_UNUSED(isRegistered)
    return properties;
}

const std::vector<Property<ReadoutFigures>>& figures() {
    using Figures = ReadoutFigures;
    static const std::vector<Property<Figures>> properties{
        {QStringLiteral("MemoryPercent"), number<&Figures::memoryPercent>},
        {QStringLiteral("ProcessorPercent"), number<&Figures::processorPercent>},
        {QStringLiteral("PerformanceClusterPercent"), number<&Figures::performanceClusterPercent>},
        {QStringLiteral("EfficiencyClusterPercent"), number<&Figures::efficiencyClusterPercent>},
        {QStringLiteral("TemperatureCelsius"), number<&Figures::temperatureCelsius>},
        {QStringLiteral("FanSpeedsRpm"), fanSpeeds},
        {QStringLiteral("DownloadBytesPerSecond"), number<&Figures::downloadBytesPerSecond>},
        {QStringLiteral("UploadBytesPerSecond"), number<&Figures::uploadBytesPerSecond>},
        {QStringLiteral("BatteryPercent"), number<&Figures::batteryPercent>},
        {QStringLiteral("BatteryCharging"),
         [](const Figures& source) {
             return source.isBatteryCharging ? QVariant(*source.isBatteryCharging) : QVariant();
         }},
        {QStringLiteral("DiskFreeBytes"), number<&Figures::diskFreeBytes>},
    };
    return properties;
}

bool isFigure(const QString& name) {
    return std::ranges::any_of(figures(), [&](const auto& property) { return property.name == name; });
}

bool isNews(const QVariant& before, const QVariant& now) {
    if (now.metaType() != QMetaType::fromType<BusKeepAwake>() || before.metaType() != now.metaType()) {
        return before != now;
    }
    const auto old = before.value<BusKeepAwake>();
    const auto current = now.value<BusKeepAwake>();
    return old.isActive != current.isActive || minutes(old.remainingSeconds) != minutes(current.remainingSeconds);
}

}  // namespace readout_properties

}  // namespace kestro
