#pragma once

#include "shell/linux/notifier/host_monitor.h"
#include "shell/linux/notifier/sni_status_item.h"
#include "shell/linux/panel_scheme_monitor.h"
#include "tests/shell/linux/bound_theme.h"
#include "tests/shell/linux/bus_client.h"
#include "tests/shell/linux/fake_watcher.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>

namespace kestro {

/// A private bus with a panel on it, and everything that items need there.
class SniFixture : public testing::Test {
protected:
    SniFixture() : client(bus.address()), panel(bus.address()) {}

    /// The environment of the items; the panel's process is called `hostProcess`.
    NotifierEnvironment environment() {
        return {bus.address(), {}, [this](uint) { return hostProcess; }};
    }

    /// Starts the panel's watcher.
    void startWatcher(bool hasHost = true) {
        watcher = std::make_unique<FakeWatcher>(panel.connection(), hasHost);
    }

    /// Starts following the bus.
    void startMonitors() {
        monitor = std::make_unique<HostMonitor>(environment());
        scheme = std::make_unique<PanelSchemeMonitor>(*monitor);
    }

    std::unique_ptr<SniStatusItem> makeItem(StatusItemHandlers handlers = {}) {
        return std::make_unique<SniStatusItem>(QStringLiteral("kestro-main"), std::move(handlers), *monitor,
                                               *scheme);
    }

    QVariant property(const SniStatusItem& item, const char* name) {
        return client.property(item.serviceName(), QStringLiteral("/StatusNotifierItem"),
                               QStringLiteral("org.kde.StatusNotifierItem"), QString::fromLatin1(name));
    }

    QDBusMessage call(const SniStatusItem& item, const char* method, const QVariantList& arguments) {
        return client.call(item.serviceName(), QStringLiteral("/StatusNotifierItem"),
                           QStringLiteral("org.kde.StatusNotifierItem"), QString::fromLatin1(method), arguments);
    }

    QDBusMessage menuCall(const SniStatusItem& item, const char* method, const QVariantList& arguments) {
        return client.call(item.serviceName(), QStringLiteral("/MenuBar"),
                           QStringLiteral("com.canonical.dbusmenu"), QString::fromLatin1(method), arguments);
    }

    /// Waits until everything that the item has sent so far has reached the panel.
    void settle(const SniStatusItem& item) {
        property(item, "Id");
        panel.call(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                   QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
    }

    /// Waits until every event queued so far has been handled.
    void settle() {
        bool isDone = false;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [&] { isDone = true; }, Qt::QueuedConnection);
        waitUntil([&] { return isDone; });
    }

    BoundTheme theme;
    PrivateBus bus;
    BusClient client;
    BusClient panel;
    QString hostProcess = QStringLiteral("some-panel");
    std::unique_ptr<FakeWatcher> watcher;
    std::unique_ptr<HostMonitor> monitor;
    std::unique_ptr<PanelSchemeMonitor> scheme;
};

}  // namespace kestro
