#include "shell/linux/readout/bus_readout_service.h"

#include "shell/linux/panel_anchor.h"
#include "shell/linux/readout/readout_properties.h"

#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QFile>

#include <algorithm>
#include <utility>
#include <vector>

// The resource is in a static library: without a reference the linker would drop it. Outside any namespace, as
// the macro requires.
static void registerDescription() {
    Q_INIT_RESOURCE(readout);
}

namespace kestro {

namespace {

/// The interface in the file's root node.
QString description() {
    registerDescription();
    QFile file(QStringLiteral(":/kestro/kestro.Readout.xml"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString text = QString::fromUtf8(file.readAll());
    const auto start = text.indexOf(QLatin1StringView("<interface"));
    return text.mid(start, text.indexOf(QLatin1StringView("</node>")) - start);
}

QString path() {
    return QString::fromLatin1(BusReadoutService::objectPath);
}
QString menuPath() {
    return path() + QStringLiteral("/Menu");
}

const QString hosted = QStringLiteral("Hosted");

}  // namespace

BusReadoutService::BusReadoutService(const QDBusConnection& bus, std::function<void(bool)> onHosted)
    : bus_(bus),
      onHosted_(std::move(onHosted)),
      clients_(bus_, [this] { followHosts(); }),
      object_(path(), QString::fromLatin1(busName), description()) {
    addProperties();
    addMethods();
    addRequests();
}

BusReadoutService::~BusReadoutService() {
    BusReadoutService::withdraw();
}

void BusReadoutService::addProperties() {
    for (const auto& property : readout_properties::common()) {
        object_.addProperty(property.name, [this, value = property.value] { return value(handlers_.readout()); });
    }
    for (const auto& property : readout_properties::figures()) {
        object_.addProperty(property.name, [this, value = property.value] { return value(handlers_.figures()); });
    }
    object_.addProperty(hosted, [this] { return QVariant(isHosted_); });
    object_.addProperty(QStringLiteral("Menu"), [] { return QVariant::fromValue(QDBusObjectPath(menuPath())); });
}

void BusReadoutService::addMethods() {
    object_.addCallerMethod(
        QStringLiteral("Follow"), QStringLiteral("as"),
        [this](const QVariantList& arguments, const QString& caller) { return follow(arguments, caller); });
    object_.addCallerMethod(QStringLiteral("Unfollow"), {},
                            [this](const QVariantList&, const QString& caller) { return unfollow(caller); });
    object_.addCallerMethod(QStringLiteral("RegisterHost"), {},
                            [this](const QVariantList&, const QString& caller) { return setHost(caller, true); });
    object_.addCallerMethod(QStringLiteral("UnregisterHost"), {},
                            [this](const QVariantList&, const QString& caller) { return setHost(caller, false); });
}

void BusReadoutService::addRequests() {
    object_.addMethod(QStringLiteral("TogglePopover"), QStringLiteral("ii"),
                      [this](const QVariantList& arguments) { return togglePopover(arguments); });
    object_.addMethod(QStringLiteral("ShowDashboard"), {}, [this](const QVariantList&) -> BusReply {
        request(Request::showDashboard, [this] { handlers_.showDashboard(); });
        return QVariantList{};
    });
    object_.addMethod(QStringLiteral("ShowSettings"), QStringLiteral("s"),
                      [this](const QVariantList& arguments) { return showSettings(arguments); });
    object_.addMethod(QStringLiteral("ToggleKeepAwake"), {}, [this](const QVariantList&) -> BusReply {
        request(Request::toggleKeepAwake, [this] { handlers_.toggleKeepAwake(); });
        return QVariantList{};
    });
}

void BusReadoutService::publish(ReadoutHandlers handlers) {
    withdraw();
    followHosts();
    handlers_ = std::move(handlers);
    menu_.emplace(handlers_.buildMenu, menuPath());
    // Before the name, so that no caller finds the name without the objects.
    if (bus_.isConnected() && object_.publish(bus_) && menu_->publish(bus_)) {
        bus_.interface()->registerService(QString::fromLatin1(busName), QDBusConnectionInterface::QueueService);
    }
}

void BusReadoutService::withdraw() {
    if (!menu_) {
        return;
    }
    if (bus_.isConnected()) {
        bus_.interface()->unregisterService(QString::fromLatin1(busName));
    }
    object_.withdraw();
    menu_.reset();
    // Without a report of the hosts: the items would come back for the moment until the application ends.
    clients_.clear();
    handlers_ = {};
}

void BusReadoutService::readoutDidUpdate() {
    if (!menu_ || !clients_.isFollowed()) {
        return;
    }
    const QVariantMap now = currentValues();
    QVariantMap changed;
    QStringList lost;
    for (auto entry = now.cbegin(); entry != now.cend(); ++entry) {
        if (!known_.contains(entry.key()) ||
            readout_properties::isNews(known_.value(entry.key()), entry.value())) {
            changed.insert(entry.key(), entry.value());
        }
    }
    for (auto entry = known_.cbegin(); entry != known_.cend(); ++entry) {
        if (!now.contains(entry.key())) {
            lost.append(entry.key());
        }
    }
    if (changed.isEmpty() && lost.isEmpty()) {
        return;
    }
    known_.insert(changed);
    for (const QString& name : lost) {
        known_.remove(name);
    }
    for (const auto& [name, client] : clients_.all()) {
        if (!client.isFollowing) {
            continue;
        }
        const auto isForeign = [&figures = client.figures](const QString& property) {
            return readout_properties::isFigure(property) && !figures.contains(property);
        };
        QVariantMap own = changed;
        own.removeIf([&](const auto& entry) { return isForeign(entry.key()); });
        QStringList ownLost = lost;
        ownLost.removeIf(isForeign);
        if (!own.isEmpty() || !ownLost.isEmpty()) {
            object_.sendChanges(name, own, ownLost);
        }
    }
}

BusReply BusReadoutService::follow(const QVariantList& arguments, const QString& caller) {
    const QStringList figures = arguments.at(0).toStringList();
    if (figures.size() > static_cast<qsizetype>(readout_properties::figures().size()) ||
        !std::ranges::all_of(figures, readout_properties::isFigure)) {
        return BusRefusal{QStringLiteral("no such figures")};
    }
    ReadoutClients::Client* const client = clients_.add(caller);
    if (client == nullptr) {
        return BusRefusal{QStringLiteral("too many programs follow the readout")};
    }
    if (!clients_.isFollowed()) {
        known_.clear();
    }
    client->isFollowing = true;
    client->figures = QSet<QString>(figures.cbegin(), figures.cend());
    // The caller reads the current values itself; what other followers have not been sent yet remains news.
    const QVariantMap now = currentValues();
    for (auto entry = now.cbegin(); entry != now.cend(); ++entry) {
        if (!known_.contains(entry.key())) {
            known_.insert(entry.key(), entry.value());
        }
    }
    return QVariantList{};
}

BusReply BusReadoutService::unfollow(const QString& caller) {
    const auto found = clients_.all().find(caller);
    if (found != clients_.all().end()) {
        ReadoutClients::Client* const client = clients_.add(caller);
        client->isFollowing = false;
        client->figures.clear();
        clients_.tidy(caller);
    }
    return QVariantList{};
}

BusReply BusReadoutService::setHost(const QString& caller, bool isHost) {
    if (isHost || clients_.all().contains(caller)) {
        ReadoutClients::Client* const client = clients_.add(caller);
        if (client == nullptr) {
            return BusRefusal{QStringLiteral("too many programs use the readout")};
        }
        client->isHost = isHost;
        clients_.tidy(caller);
        request(Request::followHosts, [this] { followHosts(); });
    }
    return QVariantList{};
}

void BusReadoutService::followHosts() {
    const bool isHosted = clients_.isHosted();
    if (std::exchange(isHosted_, isHosted) == isHosted) {
        return;
    }
    for (const auto& [name, client] : clients_.all()) {
        if (client.isFollowing) {
            object_.sendChanges(name, {{hosted, isHosted}}, {});
        }
    }
    onHosted_(isHosted);
}

BusReply BusReadoutService::togglePopover(const QVariantList& arguments) {
    const QPoint reported(arguments.at(0).toInt(), arguments.at(1).toInt());
    request(Request::togglePopover, [this, reported, pointer = currentPointer()] {
        const std::vector<ScreenFrame> screens = currentScreensAndPanels();
        const auto point = pointFromPanel(reported, screens);
        handlers_.togglePopover(panelAnchor(point ? point : pointOnPanel(pointer, screens), screens));
    });
    return QVariantList{};
}

BusReply BusReadoutService::showSettings(const QVariantList& arguments) {
    const QString name = arguments.at(0).toString();
    const auto tab = fromRawValue<SettingsTab>(name.toStdString());
    if (!tab && !name.isEmpty()) {
        return BusRefusal{QStringLiteral("no such tab")};
    }
    request(Request::showSettings, [this, tab] { handlers_.showSettings(tab); });
    return QVariantList{};
}

void BusReadoutService::request(Request kind, std::function<void()> action) {
    requests_.add(static_cast<int>(kind), [this, action = std::move(action)] {
        if (menu_) {
            action();
        }
    });
}

bool BusReadoutService::isFollowed(const QString& figure) const {
    return std::ranges::any_of(clients_.all(),
                               [&](const auto& entry) { return entry.second.figures.contains(figure); });
}

QVariantMap BusReadoutService::currentValues() const {
    QVariantMap values;
    const SharedReadout readout = handlers_.readout();
    for (const auto& property : readout_properties::common()) {
        values.insert(property.name, property.value(readout));
    }
    const bool hasFigures =
        std::ranges::any_of(clients_.all(), [](const auto& entry) { return !entry.second.figures.isEmpty(); });
    if (!hasFigures) {
        return values;
    }
    const ReadoutFigures figures = handlers_.figures();
    for (const auto& property : readout_properties::figures()) {
        if (QVariant value = isFollowed(property.name) ? property.value(figures) : QVariant(); value.isValid()) {
            values.insert(property.name, std::move(value));
        }
    }
    return values;
}

}  // namespace kestro
