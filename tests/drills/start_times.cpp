#include "tests/drills/start_times.h"

#include "tests/drills/bus_names.h"
#include "tests/drills/drill_desktop.h"
#include "tests/drills/hostile_service.h"
#include "tests/support/silent_socket.h"

#include <fmt/format.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <optional>
#include <vector>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;

constexpr auto longestStart = 150ms;

/// A busy machine delays single starts, a wait for a service delays all of them.
constexpr int starts = 5;

/// The fastest of several starts, until an item is registered; nullopt: there was none.
std::optional<std::chrono::milliseconds> fastestStart(DrillDesktop& desktop, const QStringList& variables,
                                                      const SilentSocket& silent) {
    std::optional<std::chrono::milliseconds> fastest;
    for (int count = 0; count < starts; ++count) {
        const auto begin = std::chrono::steady_clock::now();
        desktop.start(variables);
        const auto registration = [&] { return desktop.host()->firstRegistration(desktop.pid()); };
        if (!waitUntil([&] { return registration().has_value() || !desktop.isRunning(); }) ||
            !desktop.isRunning()) {
            return std::nullopt;
        }
        const auto time = std::chrono::ceil<std::chrono::milliseconds>(*registration() - begin);
        fastest = std::min(fastest.value_or(time), time);
        if (!desktop.end(SIGTERM)) {
            return std::nullopt;
        }
        // Room for the next connections.
        while (silent.accept(0).isOpen()) {
        }
    }
    return fastest;
}

}  // namespace

std::string measureStarts(DrillReport& report) {
    DrillDesktop desktop;
    const QString socket = desktop.session.path(QStringLiteral("silent"));
    const SilentSocket silent(socket.toStdString());
    std::string times;
    const auto measure = [&](const QStringList& variables, const std::string& condition) {
        const auto time = fastestStart(desktop, variables, silent);
        report.require(time.has_value(), "does not start or end " + condition);
        if (time) {
            times += fmt::format("{}{} ms {}", times.empty() ? "start in " : ", ", *time / 1ms, condition);
            report.require(!judgesTimes() || *time <= longestStart,
                           fmt::format("starts in {} ms {}", *time / 1ms, condition));
        }
    };

    measure({}, "without services");
    measure({QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS=unix:path=") + socket}, "with a silent system bus");
    std::vector<std::unique_ptr<HostileService>> services;
    for (const ServiceName& service : serviceNames) {
        services.push_back(std::make_unique<HostileService>(
            desktop.session, service.bus,
            QString::fromLatin1(service.name.data(), static_cast<qsizetype>(service.name.size())), 0));
        services.back()->hold(true);
    }
    measure({}, "with silent services");
    return times;
}

}  // namespace kestro::drills
