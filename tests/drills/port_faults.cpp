#include "tests/drills/port_faults.h"

#include "core/telemetry/cpu_telemetry.h"
#include "tests/drills/faulty_kestro.h"

#include <array>

namespace kestro::drills {

namespace {

// The documented fallbacks of readings that fail.
constexpr double socFallback = 50;
constexpr double batteryFallback = 32;

template <auto port, auto failure>
void always(SimulatedMac& mac) {
    (mac.*port.*failure).always();
}

template <auto port, auto failure>
void sometimes(SimulatedMac& mac, std::uint32_t seed) {
    (mac.*port.*failure).sometimes(seed);
}

void notAtRandom(SimulatedMac&, std::uint32_t) {}

/// The fault of a port that has a switch for it.
template <auto port, auto failure>
constexpr PortFault switched(std::string_view name, bool (*isFallbackShown)(FaultyKestro&),
                             bool holdsWhenAllFail = true) {
    return {name, always<port, failure>, sometimes<port, failure>, isFallbackShown, holdsWhenAllFail};
}

TelemetryEngine& engine(FaultyKestro& kestro) {
    return kestro.simulated.engine();
}

bool isIdle(FaultyKestro& kestro) {
    const CPUTelemetry& cpu = engine(kestro).cpu.get();
    return cpu.totalUsage == 0 && cpu.coreLoads.empty();
}

bool hasAllMemoryFree(FaultyKestro& kestro) {
    const MemoryTelemetry& memory = engine(kestro).memory.get();
    return memory.usedBytes == 0 && memory.freeBytes == memory.totalBytes && memory.totalBytes > 0 &&
           kestro.readout().find("RAM 0%") != std::string::npos;
}

bool hasInitialTemperatures(FaultyKestro& kestro) {
    return engine(kestro).thermals.get() == ThermalTelemetry::initial() &&
           engine(kestro).measured().temperatures == MeasuredTemperatures();
}

bool hasFallbackTemperatures(FaultyKestro& kestro) {
    const ThermalTelemetry& thermals = engine(kestro).thermals.get();
    return thermals.averageSoCTemp == socFallback && thermals.batteryTemp == batteryFallback &&
           thermals.peakDieTemp == socFallback;
}

bool hasNoFans(FaultyKestro& kestro) {
    return engine(kestro).fans.get().empty() && kestro.readout().find("0 RPM") != std::string::npos;
}

bool isOffline(FaultyKestro& kestro) {
    return engine(kestro).network.get() == NetworkTelemetry::initial();
}

bool hasNoProcesses(FaultyKestro& kestro) {
    return engine(kestro).topProcesses.get().empty() &&
           kestro.simulated.powerManager().currentMode.get() == SystemPowerMode::balanced;
}

bool keepsThePowerMode(FaultyKestro& kestro) {
    const SystemPowerMode before = kestro.simulated.powerManager().currentMode.get();
    kestro.simulated.powerManager().setPowerMode(
        before == SystemPowerMode::highPower ? SystemPowerMode::lowPower : SystemPowerMode::highPower);
    kestro.pass(std::chrono::seconds(12));
    return kestro.simulated.powerManager().currentMode.get() == before;
}

bool staysAsleepAware(FaultyKestro& kestro) {
    kestro.simulated.keepAwake().toggle();
    kestro.settle();
    return !kestro.simulated.keepAwake().isActive.get() && kestro.mac.assertionsHeld() == 0;
}

bool obeys(FaultyKestro& kestro) {
    const std::int64_t before = kestro.simulated.settings().selectedFanIndex.get();
    kestro.command(before == 0 ? "select-fan-1" : "select-fan-0");
    return kestro.simulated.settings().selectedFanIndex.get() != before;
}

bool ignoresCommands(FaultyKestro& kestro) {
    return !obeys(kestro);
}

bool losesNotifications(FaultyKestro& kestro) {
    const SettingsTab before = kestro.simulated.settings().selectedSettingsTab.get();
    const SettingsTab other = before == SettingsTab::power ? SettingsTab::cooling : SettingsTab::power;
    kestro.mac.notifications.post("kestro.notify.showSettings", {{"tab", std::string(rawValue(other))}});
    kestro.settle();
    return kestro.simulated.settings().selectedSettingsTab.get() == before;
}

constexpr std::array faults{
    switched<&SimulatedMac::machHost, &SimulatedMachHost::processorInfoFailure>("processor ticks", isIdle),
    switched<&SimulatedMac::machHost, &SimulatedMachHost::statisticsFailure>("memory statistics",
                                                                             hasAllMemoryFree),
    switched<&SimulatedMac::machHost, &SimulatedMachHost::pageSizeFailure>(
        "page size", [](FaultyKestro& kestro) { return engine(kestro).memory.get().usedBytes > 0; }, false),
    PortFault{"kernel numbers", [](SimulatedMac& mac) { mac.systemControl.integers.clear(); }, notAtRandom,
              [](FaultyKestro& kestro) {
                  return engine(kestro).cpu.get().cluster0Count == CPUTelemetry::initial().cluster0Count &&
                         engine(kestro).memory.get().pressureLevel == "Normal";
              },
              true},
    PortFault{"kernel texts", [](SimulatedMac& mac) { mac.systemControl.texts.clear(); }, notAtRandom,
              [](FaultyKestro& kestro) { return engine(kestro).macModel().empty(); }, true},
    PortFault{"swap usage", [](SimulatedMac& mac) { mac.systemControl.swap.reset(); }, notAtRandom,
              [](FaultyKestro& kestro) { return engine(kestro).memory.get().swapTotalBytes == 0; }, true},
    PortFault{"boot time", [](SimulatedMac& mac) { mac.systemControl.boot.reset(); }, notAtRandom,
              [](FaultyKestro& kestro) { return !engine(kestro).uptimeString().empty(); }, true},
    switched<&SimulatedMac::hidEventSystem, &SimulatedHIDEventSystem::clientFailure>("sensor client",
                                                                                     hasInitialTemperatures),
    switched<&SimulatedMac::hidEventSystem, &SimulatedHIDEventSystem::servicesFailure>("sensor list",
                                                                                       hasInitialTemperatures),
    switched<&SimulatedMac::hidEventSystem, &SimulatedHIDEventSystem::productFailure>(
        "sensor names", hasFallbackTemperatures, false),
    switched<&SimulatedMac::hidEventSystem, &SimulatedHIDEventSystem::temperatureFailure>(
        "temperatures", hasFallbackTemperatures, false),
    switched<&SimulatedMac::smc, &SimulatedSMCService::openFailure>("controller", hasNoFans),
    switched<&SimulatedMac::smc, &SimulatedSMCService::informationFailure>("controller keys", hasNoFans),
    switched<&SimulatedMac::smc, &SimulatedSMCService::bytesFailure>("controller values", hasNoFans),
    switched<&SimulatedMac::fileSystem, &SimulatedFileSystemStatistics::failure>(
        "file system", [](FaultyKestro& kestro) { return engine(kestro).disk.get() == DiskTelemetry::initial(); }),
    switched<&SimulatedMac::networkInterfaces, &SimulatedNetworkInterfaces::interfacesFailure>("interfaces",
                                                                                               isOffline),
    switched<&SimulatedMac::networkInterfaces, &SimulatedNetworkInterfaces::nameInfoFailure>(
        "address text", [](FaultyKestro& kestro) { return engine(kestro).network.get().localIP == "--"; }),
    switched<&SimulatedMac::powerSources, &SimulatedPowerSources::failure>(
        "power sources",
        [](FaultyKestro& kestro) { return engine(kestro).power.get() == PowerTelemetry::initial(); }),
    switched<&SimulatedMac::commandRunner, &SimulatedCommandRunner::failure>("child processes", hasNoProcesses),
    switched<&SimulatedMac::scriptRunner, &SimulatedScriptRunner::refusal>("scripts", keepsThePowerMode),
    switched<&SimulatedMac::powerAssertions, &SimulatedPowerAssertions::refusal>("assertions", staysAsleepAware),
    switched<&SimulatedMac::notifications, &SimulatedDistributedNotifications::loss>("notifications",
                                                                                     losesNotifications),
    switched<&SimulatedMac::fileEvents, &SimulatedFileEvents::createFailure>("creating the command file",
                                                                             ignoresCommands),
    switched<&SimulatedMac::fileEvents, &SimulatedFileEvents::watchFailure>("watching it", ignoresCommands),
    switched<&SimulatedMac::fileEvents, &SimulatedFileEvents::readFailure>("reading it", ignoresCommands),
    switched<&SimulatedMac::fileEvents, &SimulatedFileEvents::truncateFailure>("emptying it", obeys, false),
};

}  // namespace

std::span<const PortFault> allPortFaults() {
    return faults;
}

}  // namespace kestro::drills
