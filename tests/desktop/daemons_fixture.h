#pragma once

#include "tests/desktop/menu_fixture.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFileInfo>
#include <QString>
#include <QVariant>
#include <QVariantList>

#include <gtest/gtest.h>

#include <optional>

/// Skips a test of the fixture below where the program is not installed.
#define NEEDS_PROGRAM(program)                            \
    if (!isInstalled(program)) {                          \
        GTEST_SKIP() << (program) << " is not installed"; \
    }

namespace kestro {

/// Kestro beside the real daemons. A test is skipped where its daemon is not installed.
struct DaemonsOnTheDesktop : MenuFixture {
    using Bus = DesktopSession::Bus;

    /// Calls a method on either bus and returns its first result; invalid after an error.
    QVariant ask(Bus bus, const QString& service, const QString& path, const QString& interface,
                 const QString& method, const QVariantList& arguments = {}) {
        auto& connection = bus == Bus::session ? sessionConnection_ : systemConnection_;
        if (!connection) {
            connection = session.connect(bus);
        }
        auto message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setAutoStartService(false);
        message.setArguments(arguments);
        const auto reply = connection->call(message);
        return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
    }

    /// Waits until a program owns the name.
    bool isOwned(Bus bus, const QString& name) {
        const QString daemon = QStringLiteral("org.freedesktop.DBus");
        return waitUntil([&] {
            return ask(bus, daemon, QStringLiteral("/org/freedesktop/DBus"), daemon,
                       QStringLiteral("NameHasOwner"), {name})
                .toBool();
        });
    }

    static bool isInstalled(const char* program) { return QFileInfo::exists(QString::fromLatin1(program)); }

private:
    std::optional<QDBusConnection> sessionConnection_;
    std::optional<QDBusConnection> systemConnection_;
};

}  // namespace kestro
