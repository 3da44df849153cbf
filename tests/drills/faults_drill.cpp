#include "tests/drills/drills.h"
#include "tests/drills/faulty_kestro.h"
#include "tests/drills/port_faults.h"

#include <QDir>

#include <fmt/format.h>
#include <malloc.h>

#include <algorithm>
#include <optional>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;

constexpr auto halfMinute = 30s;
constexpr int minutesPerHour = 60;

/// What caches may still take after the first hours.
constexpr std::int64_t mostGrowth = 512 * 1024;

struct Resources {
    std::int64_t bytes = 0;  ///< allocated; 0 under a sanitizer, which has its own allocator
    std::int64_t descriptors = 0;

    static Resources now() {
        return {static_cast<std::int64_t>(::mallinfo2().uordblks),
                QDir(QStringLiteral("/proc/self/fd"))
                    .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                    .size()};
    }
};

void failOneByOne(DrillReport& report) {
    for (const PortFault& fault : allPortFaults()) {
        FaultyKestro kestro([&fault](SimulatedMac& mac) { fault.always(mac); });
        kestro.openEverything();
        kestro.pass(halfMinute);
        report.require(fault.isFallbackShown(kestro), fmt::format("{}: not the fallback", fault.name));
        report.require(!kestro.readout().empty(), fmt::format("{}: no readout", fault.name));
    }
}

void failTogether(DrillReport& report) {
    FaultyKestro kestro([](SimulatedMac& mac) {
        for (const PortFault& fault : allPortFaults()) {
            fault.always(mac);
        }
    });
    kestro.openEverything();
    kestro.pass(halfMinute);
    for (const PortFault& fault : allPortFaults()) {
        report.require(!fault.holdsWhenAllFail || fault.isFallbackShown(kestro),
                       fmt::format("{}: not the fallback when all fail", fault.name));
    }
}

bool isPlausible(FaultyKestro& kestro) {
    const TelemetryEngine& engine = kestro.simulated.engine();
    const double load = engine.cpu.get().totalUsage;
    const ThermalTelemetry& thermals = engine.thermals.get();
    return load >= 0 && load <= 100 && engine.memory.get().usedPercentage() <= 100 &&
           thermals.averageSoCTemp > 0 && thermals.peakDieTemp < 125 && engine.cpuHistory.get().size() == 30 &&
           engine.power.get().percentage <= 100 && !kestro.readout().empty();
}

/// Every operation fails at random, while each hour shows other windows.
class RandomFaults {
public:
    explicit RandomFaults(DrillRandom& random) : random_(random) {}

    void run(const DrillLength& length, DrillReport& report) {
        for (; length.allowsAfter(hours_); ++hours_) {
            for (const PortFault& fault : allPortFaults()) {
                fault.sometimes(kestro_.mac, random_.below(UINT32_MAX));
            }
            show();
            for (int minute = 0; minute < minutesPerHour; ++minute) {
                kestro_.pass(1min);
                report.require(isPlausible(kestro_), fmt::format("hour {}: implausible figures", hours_));
            }
            kestro_.mac.commandRunner.forgetCalls();
            kestro_.mac.scriptRunner.sources.clear();
            kestro_.mac.notifications.postings.clear();
            rest();
        }
    }

    int hours() const { return hours_; }
    std::int64_t growth() const { return last_.bytes - (first_ ? first_->bytes : last_.bytes); }
    std::int64_t descriptorGrowth() const {
        return last_.descriptors - (first_ ? first_->descriptors : last_.descriptors);
    }

private:
    void show() {
        switch (hours_ % 4) {
            case 0:
                kestro_.openEverything();
                break;
            case 1:
                kestro_.delegate.togglePopover();
                break;
            case 2:
                kestro_.delegate.showDashboard();
                break;
            default:
                kestro_.delegate.selectSettingsTab(
                    allCases<SettingsTab>()[random_.below(allCases<SettingsTab>().size())]);
                kestro_.delegate.showSettings();
                break;
        }
        kestro_.simulated.keepAwake().toggle();
    }

    /// Measures with every window closed and its memory released. The first two hours fill caches.
    void rest() {
        kestro_.closeEverything();
        kestro_.pass(halfMinute);
        last_ = Resources::now();
        if (!first_ && hours_ > 0) {
            first_ = last_;
        }
    }

    DrillRandom& random_;
    FaultyKestro kestro_{[](SimulatedMac&) {}};
    int hours_ = 0;
    std::optional<Resources> first_;
    Resources last_;
};

}  // namespace

DrillReport faultsDrill(const DrillLength& length, DrillRandom& random) {
    DrillReport report;
    failOneByOne(report);
    failTogether(report);
    RandomFaults faults(random);
    faults.run(length, report);
    report.require(faults.growth() <= mostGrowth, "memory grows");
    report.require(faults.descriptorGrowth() == 0, "descriptors grow");
    report.done = fmt::format("{} operations failed one by one, together, and at random for {} simulated hours",
                              allPortFaults().size(), faults.hours());
    report.worst = fmt::format("{} KB and {} descriptors more than after two hours", faults.growth() / 1024,
                               faults.descriptorGrowth());
    return report;
}

}  // namespace kestro::drills
