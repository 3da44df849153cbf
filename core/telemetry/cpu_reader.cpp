#include "core/telemetry/cpu_reader.h"

#include "core/base/text.h"
#include "core/platform/mach_host.h"
#include "core/platform/platform.h"
#include "core/platform/system_control.h"

#include <algorithm>

namespace kestro {

namespace {

constexpr std::size_t statesPerCore = 4;  // user, system, idle, nice

void readCount(SystemControl& system, std::string_view name, std::int64_t& count) {
    const auto value = system.sysctlByNameInt32(name);
    if (value && *value >= 1) {
        count = *value;
    }
}

void readName(SystemControl& system, std::string_view name, std::string& text) {
    const auto value = system.sysctlByNameText(name);
    if (!value) {
        return;
    }
    if (const auto label = trimmed(*value); !label.empty()) {
        text = label;
    }
}

/// Counters wrap, so take the difference in 32 bits.
double grown(std::int32_t current, std::int32_t previous) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(current) - static_cast<std::uint32_t>(previous));
}

double clampedPercent(double value) {
    return std::max(std::min(value, 100.0), 0.0);
}

}  // namespace

struct CPUReader::Sums {
    double user = 0;
    double system = 0;
    double idle = 0;
    double total = 0;
    double clusterUsage[2] = {0, 0};
    std::int64_t clusterCores[2] = {0, 0};

    std::int64_t measuredCores[2] = {0, 0};

    double meanOfCluster(int cluster, double fallback) const {
        if (measuredCores[cluster] > 0) {
            return clusterUsage[cluster] / static_cast<double>(measuredCores[cluster]);
        }
        return clusterCores[cluster] > 0 ? 0 : fallback;
    }
};

CPUReader::CPUReader(MachHost& host, SystemControl& system) : host_(host), system_(system) {
    queryClusters();
}

void CPUReader::queryClusters() {
    readCount(system_, "hw.perflevel0.physicalcpu", cluster0Count_);
    readCount(system_, "hw.perflevel1.physicalcpu", cluster1Count_);
    readName(system_, "hw.perflevel0.name", cluster0Name_);
    readName(system_, "hw.perflevel1.name", cluster1Name_);
}

CPUReader& CPUReader::shared() {
    // Never destroyed: it lives as long as the process and outlives the platform.
    static auto* const reader = new CPUReader(Platform::current().machHost, Platform::current().systemControl);
    return *reader;
}

CPUTelemetry CPUReader::readCPU() {
    CPUTelemetry record;
    readCPU(record);
    return record;
}

void CPUReader::readCPU(CPUTelemetry& record) {
    const std::scoped_lock guard(lock_);
    const auto load = host_.hostProcessorInfo();
    const bool isArrangedAnew = load && load->arrangement != arrangement_;
    if (isArrangedAnew) {
        queryClusters();
    }
    beginIdle(record);
    if (!load || load->info.data() == nullptr) {
        record.coreLoads.clear();
        record.coreCount = 0;
        return;
    }
    record.coreCount = load->processorCount;
    const bool isFirst = previousCpuInfo_.data() == nullptr;
    previousSlot_.clear();
    if (isFirst || isArrangedAnew) {
        arrangement_ = load->arrangement;
        matchCores(*load);
    }
    if (isFirst) {
        record.coreLoads.clear();
        previousCpuInfo_ = load->info;
        return;
    }

    const Sums sums = measureCores(*load, record);
    replacePrevious(load->info);

    if (sums.total > 0) {
        record.totalUsage = (sums.user + sums.system) / sums.total * 100;
        record.systemUsage = sums.system / sums.total * 100;
        record.userUsage = sums.user / sums.total * 100;
        record.idleUsage = sums.idle / sums.total * 100;
    }
    record.cluster0Usage = sums.meanOfCluster(0, record.totalUsage);
    record.cluster1Usage = sums.meanOfCluster(1, record.totalUsage);
    for (double* usage : {&record.totalUsage, &record.systemUsage, &record.userUsage, &record.idleUsage,
                          &record.cluster0Usage, &record.cluster1Usage}) {
        *usage = clampedPercent(*usage);
    }
}

void CPUReader::beginIdle(CPUTelemetry& record) const {
    record.totalUsage = 0;
    record.systemUsage = 0;
    record.userUsage = 0;
    record.idleUsage = 100;
    record.cluster0Usage = 0;
    record.cluster1Usage = 0;
    record.cluster0Name = cluster0Name_;
    record.cluster1Name = cluster1Name_;
    record.cluster0Count = cluster0Count_;
    record.cluster1Count = cluster1Count_;
}

void CPUReader::matchCores(const ProcessorLoadInfo& load) {
    for (const auto& processor : load.processors) {
        const auto found = std::ranges::find(numbers_, processor.number);
        previousSlot_.push_back(static_cast<std::size_t>(found - numbers_.begin()));
    }
    numbers_.clear();
    for (const auto& processor : load.processors) {
        numbers_.push_back(processor.number);
    }
}

CPUReader::Sums CPUReader::measureCores(const ProcessorLoadInfo& load, CPUTelemetry& record) const {
    Sums sums;
    const std::size_t before = previousCpuInfo_.size() / statesPerCore;
    std::size_t cores = std::min(std::size_t{load.processorCount}, load.info.size() / statesPerCore);
    if (previousSlot_.empty()) {
        cores = std::min(cores, before);
    }
    record.coreLoads.resize(cores);
    for (std::size_t core = 0; core < cores; ++core) {
        CoreLoad& result = record.coreLoads[core];
        result.id = static_cast<std::int64_t>(core);
        result.isSuperCluster = result.id < cluster0Count_;
        result.clusterName = result.isSuperCluster ? "Super" : "Perf";
        const bool isIdentified = core < load.processors.size();
        result.kernelNumber =
            isIdentified ? std::optional<std::int64_t>(load.processors[core].number) : std::nullopt;
        result.isOnline = !isIdentified || load.processors[core].isOnline;

        const int cluster = result.isSuperCluster ? 0 : 1;
        ++sums.clusterCores[cluster];
        const std::size_t previous = core < previousSlot_.size() ? previousSlot_[core] : core;
        // A core that the previous array lacks is measured from the next reading on.
        result.usagePercentage = previous < before ? addCore(load.info.subspan(core * statesPerCore), previous,
                                                             cluster, isIdentified, sums)
                                                   : 0;
    }
    return sums;
}

double CPUReader::addCore(std::span<const std::int32_t> now, std::size_t previous, int cluster, bool isIdentified,
                          Sums& sums) const {
    const auto before = previousCpuInfo_.subspan(previous * statesPerCore);
    const double user = grown(now[0], before[0]);
    const double system = grown(now[1], before[1]);
    const double idle = grown(now[2], before[2]);
    const double nice = grown(now[3], before[3]);
    const double busy = user + system + nice;
    const double all = busy + idle;
    const double usage = all > 0 ? clampedPercent(busy / all * 100) : 0;

    // Only a host that identifies its cores lists those that are offline, whose counters rest.
    const bool isMeasured = all != 0 || !isIdentified;
    sums.measuredCores[cluster] += isMeasured ? 1 : 0;
    sums.clusterUsage[cluster] += usage;
    sums.user += user;
    sums.system += system;
    sums.idle += idle;
    sums.total += all;
    return usage;
}

void CPUReader::replacePrevious(std::span<std::int32_t> info) {
    host_.vmDeallocate(previousCpuInfo_.data(), previousCpuInfo_.size() * sizeof(std::int32_t));
    previousCpuInfo_ = info;
}

}  // namespace kestro
