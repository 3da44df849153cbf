#include "core/engine/telemetry_engine.h"
#include "core/power/keep_awake_manager.h"
#include "core/power/power_mode_manager.h"
#include "platform/macos/mac_machine.h"

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace kestro {

namespace {

/// Samples the machine twice and prints a line for each source.
void printSamples() {
    auto& engine = TelemetryEngine::shared();
    engine.sampleFull();
    engine.sampleFull();
    fmt::print("{}, {}, {}\n", engine.macModel(), engine.macOSVersion(), engine.uptimeString());
    fmt::print("{} cores, {} of {} bytes in use\n", engine.cpu.get().coreCount, engine.memory.get().usedBytes,
               engine.memory.get().totalBytes);
    fmt::print("{} sensors, {:.1f} degrees, {} fans\n", engine.thermals.get().sensorCount,
               engine.thermals.get().averageSoCTemp, engine.fans.get().size());
    fmt::print("{} bytes free, {} on {}\n", engine.disk.get().freeBytes, engine.network.get().localIP,
               engine.network.get().primaryInterface);
    fmt::print("battery {:.0f} %\n", engine.power.get().percentage);
}

}  // namespace

}  // namespace kestro

/// Links every port and everything above that needs no toolkit; on a Mac it prints what they read.
int main() {
    static kestro::MacMachine mac;
    kestro::Platform::install(mac.platform);
    kestro::printSamples();
    std::fflush(stdout);
    kestro::KeepAwakeManager::shared().toggle();
    kestro::PowerModeManager::shared().refreshPowerMode();
    mac.commandRunner.stop();
    mac.runLoop.finishBackgroundTasks(std::chrono::seconds(1));
    std::_Exit(0);
}
