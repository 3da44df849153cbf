#include "shell/linux/notifier/bus_types.h"
#include "tests/drills/bus_names.h"
#include "tests/drills/drill_desktop.h"
#include "tests/drills/drills.h"
#include "tests/drills/hostile_messages.h"
#include "tests/drills/hostile_service.h"
#include "tests/drills/start_times.h"

#include <fmt/format.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <string>
#include <vector>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;

/// What one message or backlog may cost the main thread.
constexpr auto mostCost = 100ms;

/// A main thread that waits for a service costs nothing but does not answer. A busy machine adds to this.
constexpr auto longestLatency = 2s;
constexpr int flood = 2000;
constexpr int longestList = 4096;

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

class BusDrill {
public:
    explicit BusDrill(DrillRandom& random) : random_(random) {
        registerBusTypes();
        for (const ServiceName& service : serviceNames) {
            services_.push_back(std::make_unique<HostileService>(
                desktop_.session, service.bus,
                QString::fromLatin1(service.name.data(), static_cast<qsizetype>(service.name.size())),
                random_.below(UINT32_MAX)));
        }
        caller_ = std::make_unique<QDBusConnection>(desktop_.session.connect(Bus::session));
    }

    void run(const DrillLength& length, DrillReport& report) {
        desktop_.launch();
        desktop_.settle();
        for (; length.allowsAfter(attacks_) && report.failures.size() < 50; ++attacks_) {
            attack(report);
        }
        for (const auto& service : services_) {
            service->hold(false);
            calls_ += service->calls();
        }
        report.require(!hasKeptStrip_, "keeps its strip after a hostile watcher");
        report.require(desktop_.end(SIGTERM) && desktop_.kestro->exitCode() == 0, "does not end");
    }

    std::string done() const { return fmt::format("{} attacks, {} calls answered badly", attacks_, calls_); }
    std::string worst() const {
        return fmt::format("{:.1f} ms of the main thread for {}, an answer after {} ms",
                           static_cast<double>(mostExpensive_ / 1us) / 1000, mostExpensiveAttack_, slowest_ / 1ms);
    }

private:
    void attack(DrillReport& report) {
        const auto before = desktop_.mainThreadTime();
        const std::string name = strike();
        const auto latency = desktop_.isRunning() ? desktop_.latency() : std::nullopt;
        if (!latency) {
            report.require(false, fmt::format("attack {}: no answer after {}", attacks_, name));
            revive();
            return;
        }
        slowest_ = std::max<std::chrono::nanoseconds>(slowest_, *latency);
        report.require(!judgesTimes() || *latency <= longestLatency,
                       fmt::format("attack {}: no answer for {} ms after {}", attacks_, *latency / 1ms, name));
        const auto cost = desktop_.mainThreadTime() - before;
        if (cost > mostExpensive_) {
            mostExpensive_ = cost;
            mostExpensiveAttack_ = name;
        }
        report.require(!judgesTimes() || cost <= mostCost,
                       fmt::format("attack {}: {} costs {} ms", attacks_, name, cost / 1ms));
    }

    void revive() {
        if (!desktop_.isRunning()) {
            desktop_.launch();
        }
    }

    /// One attack; returns its name.
    std::string strike() {
        switch (random_.below(10)) {
            case 0:
                return callMenu();
            case 1:
                return callItem();
            case 2:
                return sendSignal();
            case 3:
                return floodSignals();
            case 4:
                return longMenuLists();
            case 5:
                return changeOwners();
            case 6:
                return changeHost();
            case 7:
                return holdAnswers();
            case 8:
                return misuseWatcher();
            default:
                return useServices();
        }
    }

    void send(const QString& path, const char* interface, const char* method, const QVariantList& arguments) {
        auto call = QDBusMessage::createMethodCall(desktop_.mainItem(), path, text(interface), text(method));
        call.setArguments(arguments);
        caller_->send(call);
    }

    std::string callMenu() {
        const char* const method = random_.oneOf(menuMethods);
        send(QStringLiteral("/MenuBar"), menuInterface, method, hostileArguments(random_));
        return fmt::format("{} with other types", method);
    }

    std::string callItem() {
        const char* const method = random_.oneOf(itemMethods);
        send(QStringLiteral("/StatusNotifierItem"), "org.kde.StatusNotifierItem", method,
             hostileArguments(random_));
        return fmt::format("{} with other types", method);
    }

    std::string longMenuLists() {
        QList<int> ids;
        QStringList names;
        QList<MenuEvent> events;
        for (int index = 0; index < longestList; ++index) {
            ids.append(index % 64);
            names.append(QString::number(index));
            // Neither "Quit Kestro", the last entry, nor an entry that opens a window: their cost is their own.
            events.append({random_.onceIn(2) ? 0 : 1, random_.onceIn(2) ? text("opened") : text("clicked"),
                           QDBusVariant(QString()), 0});
        }
        const QString path = QStringLiteral("/MenuBar");
        switch (random_.below(4)) {
            case 0:
                send(path, menuInterface, "GetGroupProperties", {QVariant::fromValue(ids), names});
                return "GetGroupProperties of 4096 names and entries";
            case 1:
                send(path, menuInterface, "EventGroup", {QVariant::fromValue(events)});
                return "EventGroup of 4096 events";
            case 2:
                send(path, menuInterface, "AboutToShowGroup", {QVariant::fromValue(ids)});
                return "AboutToShowGroup of 4096 entries";
            default:
                send(path, menuInterface, "GetLayout", {0, -1, names});
                return "GetLayout with 4096 names";
        }
    }

    std::string sendSignal() {
        const SignalName& name = random_.oneOf(signalNames);
        emitSignal(senderOf(name), name, hostileArguments(random_));
        return fmt::format("{} with other types", name.member);
    }

    std::string floodSignals() {
        const SignalName& name = random_.oneOf(signalNames);
        const QDBusConnection& sender = senderOf(name);
        const QVariantList arguments = hostileArguments(random_);
        for (int count = 0; count < flood; ++count) {
            emitSignal(sender, name, arguments.size() > 1 ? QVariantList() : arguments);
        }
        return fmt::format("{} times {}", flood, name.member);
    }

    /// Now and then a stranger.
    const QDBusConnection& senderOf(const SignalName& name) {
        if (name.sender == watcher) {
            return desktop_.host()->service().connection();
        }
        const auto owner = std::ranges::find(serviceNames, name.sender, &ServiceName::name);
        if (owner == serviceNames.end() || random_.onceIn(4)) {
            return random_.oneOf(services_)->connection();
        }
        return services_[static_cast<std::size_t>(owner - serviceNames.begin())]->connection();
    }

    static void emitSignal(const QDBusConnection& sender, const SignalName& name, const QVariantList& arguments) {
        auto signal = QDBusMessage::createSignal(text(name.path), text(name.interface), text(name.member));
        signal.setArguments(arguments);
        sender.send(signal);
    }

    std::string changeOwners() {
        for (const auto& service : services_) {
            if (random_.onceIn(2)) {
                service->changeOwner();
            }
        }
        return "services that come and go";
    }

    /// The item's host vanishes, and returns at once or after the program has noticed.
    std::string changeHost() {
        desktop_.host()->service().vanish();
        if (random_.onceIn(2)) {
            DrillDesktop::pause(random_.upTo(200ms));
        }
        desktop_.host()->service().appear();
        waitUntil([this] { return !desktop_.isRunning() || !desktop_.mainItem().isEmpty(); });
        return "a host that comes and goes";
    }

    /// The watcher answers with other types, twice, late or from another process, and then correctly again.
    std::string misuseWatcher() {
        QuietHost& host = *desktop_.host();
        const auto random = std::make_shared<DrillRandom>(random_.below(UINT32_MAX));
        host.misbehave([&host, random](const QDBusMessage& call) {
            return hostileAnswer(call, host.service().connection(), *random);
        });
        host.service().hold(random_.onceIn(2));
        for (auto changes = random_.below(20); changes > 0; --changes) {
            emitSignal(host.service().connection(), random_.onceIn(2) ? hostRegistered : hostUnregistered, {});
        }
        if (random_.onceIn(3)) {
            host.service().vanish();
            host.service().appear();
        }
        DrillDesktop::pause(random_.upTo(200ms));
        host.service().hold(false);
        host.service().answerHeld();
        host.misbehave({});
        emitSignal(host.service().connection(), hostRegistered, {});
        const bool hasItem = waitUntil([this] { return !desktop_.isRunning() || !desktop_.session.strip(); });
        hasKeptStrip_ = hasKeptStrip_ || !hasItem;
        return "a hostile watcher";
    }

    std::string holdAnswers() {
        HostileService& service = *random_.oneOf(services_);
        service.hold(random_.onceIn(2));
        return "answers that are late";
    }

    /// Makes the program call the services.
    std::string useServices() {
        switch (random_.below(4)) {
            case 0:
                desktop_.choose(QStringLiteral("Low Power"));
                break;
            case 1:
                desktop_.choose(QStringLiteral("High Power"));
                break;
            case 2:
                desktop_.choose(QStringLiteral("15 Minutes"));
                break;
            default:
                desktop_.choose(QStringLiteral("Activate Indefinitely"));
                break;
        }
        return "the use of hostile services";
    }

    DrillRandom& random_;
    DrillDesktop desktop_;
    std::vector<std::unique_ptr<HostileService>> services_;
    std::unique_ptr<QDBusConnection> caller_;
    int attacks_ = 0;
    bool hasKeptStrip_ = false;  ///< after an attack of the watcher
    std::size_t calls_ = 0;
    std::chrono::nanoseconds mostExpensive_{};
    std::chrono::nanoseconds slowest_{};
    std::string mostExpensiveAttack_ = "nothing";
};

/// Both buses die, one after the other, and the program goes on without them.
void loseTheBuses(DrillReport& report) {
    DrillDesktop desktop;
    desktop.launch();
    desktop.session.killBus(Bus::system);
    report.require(desktop.latency().has_value(), "no answer after the death of the machine's bus");
    desktop.session.killBus(Bus::session);
    report.require(waitUntil([&] { return desktop.session.strip().has_value() || !desktop.isRunning(); }) &&
                       desktop.isRunning(),
                   "no readout after the death of the session's bus");
    report.require(desktop.command("dashboard") && waitUntil([&] { return desktop.session.windows().size() > 1; }),
                   "no window after the death of the session's bus");
    report.require(desktop.end(SIGTERM) && desktop.kestro->exitCode() == 0,
                   "does not end after the death of the session's bus");
}

}  // namespace

DrillReport busDrill(const DrillLength& length, DrillRandom& random) {
    DrillReport report;
    BusDrill drill(random);
    drill.run(length, report);
    loseTheBuses(report);
    const std::string starts = measureStarts(report);
    report.done = drill.done() + ", and the death of both buses";
    report.worst = drill.worst() + "; " + starts;
    return report;
}

}  // namespace kestro::drills
