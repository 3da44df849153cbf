#include "shots/scene.h"
#include "ui/dashboard/dashboard_view.h"

#include <array>
#include <string>

namespace kestro::shots {

namespace {

Scene scene(const QString& name, const QSize& size) {
    Scene made;
    made.name = QStringLiteral("dashboard-") + name;
    made.make = [size](SimulatedServices& services) {
        auto view = std::make_unique<DashboardView>(services.services(), DashboardActions{[] {}, [] {}, [] {}});
        view->resize(size);
        return view;
    };
    return made;
}

void addSizes(std::vector<Scene>& scenes) {
    constexpr std::array<QSize, 7> sizes{QSize(740, 420),  QSize(788, 480),  QSize(800, 460), QSize(1000, 480),
                                         QSize(1024, 568), QSize(1260, 420), QSize(1260, 480)};
    for (const QSize& size : sizes) {
        Scene made = scene(QStringLiteral("%1x%2").arg(size.width()).arg(size.height()), size);
        made.atFractionalScales = size.width() == 740 || size == QSize(1260, 480);
        scenes.push_back(std::move(made));
    }
}

/// Windows that enlarge the dashboard; in full screen on common screens, one of them turned.
void addLargeSizes(std::vector<Scene>& scenes) {
    constexpr std::array<QSize, 10> sizes{
        QSize(1366, 768),  QSize(1500, 750),  QSize(1600, 1200), QSize(1920, 1080), QSize(2560, 1440),
        QSize(3440, 1440), QSize(3840, 2160), QSize(1080, 1920), QSize(1260, 600),  QSize(740, 1000)};
    for (const QSize& size : sizes) {
        Scene made = scene(QStringLiteral("large-%1x%2").arg(size.width()).arg(size.height()), size);
        made.drive = [](SimulatedServices& services) {
            services.settings().processCountLimit.set(8);
            services.settle();
        };
        made.atFractionalScales = size.width() == 1500;
        scenes.push_back(std::move(made));
    }
}

void setSections(UserSettings& settings, int count) {
    const std::array switches{&settings.showCompute, &settings.showCooling, &settings.showMemory,
                              &settings.showNetwork, &settings.showTopProcesses};
    for (size_t i = 0; i < switches.size(); ++i) {
        switches[i]->set(static_cast<int>(i) < count);
    }
}

void addSectionCounts(std::vector<Scene>& scenes) {
    for (int count = 0; count < 5; ++count) {
        Scene made = scene(QStringLiteral("sections-%1").arg(count), QSize(std::max(count, 3) * 236 + 80, 480));
        made.drive = [count](SimulatedServices& services) { setSections(services.settings(), count); };
        scenes.push_back(made);
        made = scene(QStringLiteral("large-sections-%1").arg(count), QSize(1920, 1080));
        made.drive = [count](SimulatedServices& services) { setSections(services.settings(), count); };
        scenes.push_back(std::move(made));
    }
}

void addPalettes(std::vector<Scene>& scenes) {
    for (const ThemePalette palette : allCases<ThemePalette>()) {
        const std::string label(rawValue(palette));
        const QString word = QString::fromStdString(label.substr(0, label.find(' '))).toLower();
        Scene made = scene(QStringLiteral("palette-") + word, QSize(1260, 480));
        made.drive = [palette](SimulatedServices& services) {
            services.settings().themePalette.set(palette);
            services.settings().isPinned.set(true);
            services.settings().processCountLimit.set(10);
            services.settle();
        };
        scenes.push_back(std::move(made));
    }
}

void addFans(std::vector<Scene>& scenes) {
    const std::array<std::vector<float>, 4> inventories{
        {{}, {1830}, {1420, 1510, 980}, {1420, 5510, 980, 2210, 640, 7120}}};
    for (const auto& speeds : inventories) {
        for (const QSize& size : {QSize(740, 420), QSize(1260, 480)}) {
            Scene made = scene(QStringLiteral("fans-%1-%2").arg(speeds.size()).arg(size.width()), size);
            made.arrange = [speeds](SimulatedMac& mac) { mac.smc.setFans(speeds); };
            scenes.push_back(std::move(made));
        }
    }
}

void addCores(std::vector<Scene>& scenes) {
    for (const int count : {1, 32, 64, 256}) {
        Scene made = scene(QStringLiteral("cores-%1").arg(count), QSize(1260, 480));
        made.arrange = [count](SimulatedMac& mac) {
            const auto cores = static_cast<size_t>(count);
            mac.machHost.cores.resize(cores);
            mac.machHost.coreLoads.resize(cores);
            for (size_t i = 0; i < cores; ++i) {
                mac.machHost.coreLoads[i] = static_cast<double>((i * 37 + 11) % 100);
            }
            mac.systemControl.integers["hw.perflevel0.physicalcpu"] = (count + 1) / 2;
            mac.systemControl.integers["hw.perflevel1.physicalcpu"] = count / 2;
        };
        scenes.push_back(std::move(made));
    }
}

void addStates(std::vector<Scene>& scenes) {
    Scene custom = scene(QStringLiteral("custom-curves"), QSize(1260, 480));
    custom.drive = [](SimulatedServices& services) { services.fanManager().setProfile(FanProfile::custom); };
    scenes.push_back(std::move(custom));

    Scene hot = scene(QStringLiteral("hot"), QSize(1260, 480));
    hot.arrange = [](SimulatedMac& mac) {
        for (SimulatedSensor& sensor : mac.hidEventSystem.sensors) {
            if (sensor.temperature) {
                *sensor.temperature += 46;
            }
        }
        mac.powerSources.setBattery(9, false);
    };
    scenes.push_back(std::move(hot));

    for (const auto& [word, state] : {std::pair("fair", 1), std::pair("serious", 2), std::pair("critical", 3)}) {
        Scene thermal = scene(QStringLiteral("thermal-") + QString::fromUtf8(word), QSize(1000, 480));
        thermal.arrange = [state = state](SimulatedMac& mac) {
            mac.processInfo.state = state;
            mac.powerSources.removeBattery();
        };
        scenes.push_back(std::move(thermal));
    }

    for (const std::size_t fans : {0U, 2U}) {
        for (const QSize& size : {QSize(740, 420), QSize(1260, 480)}) {
            Scene unmeasured = scene(QStringLiteral("unmeasured-fans-%1-%2").arg(fans).arg(size.width()), size);
            unmeasured.arrange = [fans](SimulatedMac& mac) {
                mac.hidEventSystem.sensors.clear();
                mac.powerSources.removeBattery();
                mac.smc.setFans(std::vector<float>(fans, 1420.0F));
            };
            scenes.push_back(std::move(unmeasured));
        }
    }

    Scene opened = scene(QStringLiteral("just-opened"), QSize(1260, 480));
    opened.drive = [](SimulatedServices& services) {
        services.engine().setUIActive(false);
        services.advance(std::chrono::hours(1));
        services.engine().setUIActive(true);
    };
    scenes.push_back(std::move(opened));

    Scene extremes = scene(QStringLiteral("long-names"), QSize(740, 420));
    extremes.arrange = [](SimulatedMac& mac) {
        for (SimulatedProcess& process : mac.commandRunner.processes) {
            process.command = "/usr/libexec/a_very_long_process_name_" + std::string(60, 'W');
        }
        mac.powerSources.removeBattery();
        mac.systemControl.texts["machdep.cpu.brand_string"] = "A processor with a name that has no end at all";
    };
    extremes.drive = [](SimulatedServices& services) {
        services.settings().processSortMetric.set(ProcessSortMetric::memory);
        services.settings().processCountLimit.set(10);
        services.settle();
    };
    scenes.push_back(std::move(extremes));
}

}  // namespace

std::vector<Scene> dashboardScenes() {
    std::vector<Scene> scenes;
    addSizes(scenes);
    addLargeSizes(scenes);
    addSectionCounts(scenes);
    addPalettes(scenes);
    addFans(scenes);
    addCores(scenes);
    addStates(scenes);
    return scenes;
}

}  // namespace kestro::shots
