#pragma once

#include "shell/linux/readout/bus_readout_service.h"
#include "tests/shell/linux/bus_client.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace kestro::test {

/// A program on the bus that uses the readout.
class ReadoutPanel : public QObject {
    Q_OBJECT

public:
    explicit ReadoutPanel(const QString& address) : client_(address) {
        client_.connection().connect(name(), path(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                     QStringLiteral("PropertiesChanged"), this, SLOT(onChange(QDBusMessage)));
    }

    QDBusMessage call(const QString& method, const QVariantList& arguments = {}) {
        return client_.call(name(), path(), name(), method, arguments);
    }

    bool follow(const QStringList& figures = {}) {
        return call(QStringLiteral("Follow"), {figures}).type() == QDBusMessage::ReplyMessage;
    }

    QVariantMap all() {
        const QDBusMessage reply = client_.call(name(), path(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                                QStringLiteral("GetAll"), {name()});
        return reply.type() == QDBusMessage::ReplyMessage ? qdbus_cast<QVariantMap>(reply.arguments().at(0))
                                                          : QVariantMap();
    }

    QVariant property(const char* property) {
        return client_.property(name(), path(), name(), QString::fromLatin1(property));
    }

    /// Waits until everything that the service has sent so far has been received, without asking for its values.
    void settle() { property("Hosted"); }

    BusClient& client() { return client_; }

    std::vector<QVariantMap> changes;  ///< of each signal
    std::vector<QStringList> losses;   ///< likewise

    static QString name() { return QString::fromLatin1(BusReadoutService::busName); }
    static QString path() { return QString::fromLatin1(BusReadoutService::objectPath); }

private Q_SLOTS:
    void onChange(const QDBusMessage& message) {
        EXPECT_EQ(message.arguments().at(0).toString(), name());
        changes.push_back(qdbus_cast<QVariantMap>(message.arguments().at(1)));
        losses.push_back(message.arguments().at(2).toStringList());
    }

private:
    BusClient client_;
};

/// The service on a private bus, with what it publishes and what was asked of it.
class ReadoutServiceFixture : public testing::Test {
protected:
    ReadoutServiceFixture() {
        readout.text = QStringLiteral("RAM 42%");
        readout.widestText = QStringLiteral("RAM 100%");
        readout.toolTip = QStringLiteral("Kestro: RAM 42%");
        readout.hasSymbol = true;
        figures.memoryPercent = 42;
        service.publish(handlers());
    }

    ReadoutHandlers handlers() {
        return {.readout = [this] { return ++readoutsAsked, readout; },
                .figures = [this] { return ++figuresAsked, figures; },
                .togglePopover = [this](const QRect& anchor) { popovers.push_back(anchor); },
                .showDashboard = [this] { ++dashboards; },
                .showSettings = [this](std::optional<SettingsTab> tab) { settings.push_back(tab); },
                .toggleKeepAwake = [this] { ++keepAwakes; },
                .buildMenu =
                    [] {
                        MenuEntry entry;
                        entry.title = QStringLiteral("Dashboard");
                        return Menu{entry};
                    }};
    }

    /// Publishes the current values and waits until `panel` has received what was sent to it.
    void update(ReadoutPanel& receiver) {
        service.readoutDidUpdate();
        receiver.settle();
    }

    PrivateBus bus;
    std::vector<bool> hosted;
    BusReadoutService service{bus.connect(), [this](bool isHosted) { hosted.push_back(isHosted); }};
    ReadoutPanel panel{bus.address()};

    SharedReadout readout;
    ReadoutFigures figures;
    int readoutsAsked = 0;
    int figuresAsked = 0;
    std::vector<QRect> popovers;
    int dashboards = 0;
    std::vector<std::optional<SettingsTab>> settings;
    int keepAwakes = 0;
};

}  // namespace kestro::test
