#include "tests/core/engine/engine_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace kestro {
namespace {

/// Records what was read, each source once no matter how many calls it takes.
class Log {
public:
    void add(const std::string& source) {
        if (std::ranges::find(sources, source) == sources.end()) {
            sources.push_back(source);
        }
    }

    std::vector<std::string> sources;
};

class LoggedSMC final : public SMCService {
public:
    LoggedSMC(Log& log, SMCService& inner) : log_(log), inner_(inner) {}
    std::optional<std::uint32_t> open() override { return inner_.open(); }
    bool callStructMethod(std::uint32_t connection, const SMCRecord& input, SMCRecord& output) override {
        log_.add("fans");
        return inner_.callStructMethod(connection, input, output);
    }
    void close(std::uint32_t connection) override { inner_.close(connection); }

private:
    Log& log_;
    SMCService& inner_;
};

class LoggedHost final : public MachHost {
public:
    LoggedHost(Log& log, MachHost& inner) : log_(log), inner_(inner) {}
    std::optional<ProcessorLoadInfo> hostProcessorInfo() override {
        log_.add("cpu");
        return inner_.hostProcessorInfo();
    }
    void vmDeallocate(std::int32_t* address, std::size_t byteCount) override {
        inner_.vmDeallocate(address, byteCount);
    }
    std::optional<VirtualMemoryStatistics> hostStatistics64() override {
        log_.add("memory");
        return inner_.hostStatistics64();
    }
    std::optional<std::size_t> hostPageSize() override { return inner_.hostPageSize(); }

private:
    Log& log_;
    MachHost& inner_;
};

class LoggedSensors final : public HIDEventSystem {
public:
    LoggedSensors(Log& log, HIDEventSystem& inner) : log_(log), inner_(inner) {}
    std::optional<HIDClient> createClient() override { return inner_.createClient(); }
    void setMatching(HIDClient client, std::int32_t page, std::int32_t usage) override {
        inner_.setMatching(client, page, usage);
    }
    std::optional<std::span<const HIDService>> copyServices(HIDClient client) override {
        log_.add("thermals");
        return inner_.copyServices(client);
    }
    std::optional<std::string_view> copyProduct(HIDService service) override {
        return inner_.copyProduct(service);
    }
    std::optional<double> copyTemperatureEvent(HIDService service) override {
        return inner_.copyTemperatureEvent(service);
    }

private:
    Log& log_;
    HIDEventSystem& inner_;
};

class LoggedFileSystem final : public FileSystemStatistics {
public:
    LoggedFileSystem(Log& log, FileSystemStatistics& inner) : log_(log), inner_(inner) {}
    std::optional<FileSystemStatus> statvfs(const std::string& path) override {
        log_.add("disk");
        return inner_.statvfs(path);
    }

private:
    Log& log_;
    FileSystemStatistics& inner_;
};

class LoggedInterfaces final : public NetworkInterfaces {
public:
    LoggedInterfaces(Log& log, NetworkInterfaces& inner) : log_(log), inner_(inner) {}
    std::optional<std::span<const InterfaceEntry>> getifaddrs() override {
        log_.add("network");
        return inner_.getifaddrs();
    }
    std::optional<std::string> getnameinfo(const InterfaceAddress& address) override {
        return inner_.getnameinfo(address);
    }

private:
    Log& log_;
    NetworkInterfaces& inner_;
};

class LoggedPower final : public PowerSources {
public:
    LoggedPower(Log& log, PowerSources& inner) : log_(log), inner_(inner) {}
    std::optional<std::vector<std::optional<PowerSourceDescription>>> copyDescriptions() override {
        log_.add("power");
        return inner_.copyDescriptions();
    }

private:
    Log& log_;
    PowerSources& inner_;
};

TEST(TelemetryEngine, ReadsEverySourceInOrderBeforePublishingAny) {
    SimulatedMac mac;
    UserSettings settings(mac.userDefaults);
    Log log;
    LoggedSMC smcPort(log, mac.smc);
    LoggedHost host(log, mac.machHost);
    LoggedSensors sensors(log, mac.hidEventSystem);
    LoggedFileSystem fileSystem(log, mac.fileSystem);
    LoggedInterfaces interfaces(log, mac.networkInterfaces);
    LoggedPower sources(log, mac.powerSources);
    CPUReader cpu(host, mac.systemControl);
    MemoryReader memory(host, mac.systemControl, mac.processInfo);
    DiskReader disk(fileSystem);
    NetworkReader network(interfaces, mac.clock);
    PowerReader power(sources);
    SMCReader smc(smcPort);
    ThermalReader thermal(sensors, mac.processInfo);
    ProcessReader processes(mac.commandRunner);
    TelemetryEngine engine(mac.platform(), settings,
                           TelemetryReaders{cpu, memory, disk, network, power, smc, thermal, processes});
    const auto published = engine.fans.subscribe([&](const auto&) { log.add("published"); });

    engine.sampleFull();

    EXPECT_EQ(log.sources, (std::vector<std::string>{"fans", "memory", "thermals", "cpu", "disk", "network",
                                                     "power", "published"}));
}

}  // namespace
}  // namespace kestro
