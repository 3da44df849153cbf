#include "tests/shell/linux/notifier/sni_fixture.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using SniRegistrationTest = SniFixture;

StatusContent readout(const char* text = " RAM 42%") {
    StatusContent content;
    content.title.text = QString::fromUtf8(text);
    content.widestTitle = QStringLiteral(" RAM 100%");
    return content;
}

TEST_F(SniRegistrationTest, TakesTheNextNumberWhenItsNameIsOwned) {
    startWatcher();
    startMonitors();
    const QString before = makeItem()->serviceName();
    const int number = before.section(QLatin1Char('-'), -1).toInt();
    const QString prefix = before.section(QLatin1Char('-'), 0, -2) + QLatin1Char('-');
    // As a process with the same identifier in another namespace would.
    ASSERT_TRUE(client.connection().registerService(prefix + QString::number(number + 1)));
    ASSERT_TRUE(client.connection().registerService(prefix + QString::number(number + 2)));

    const auto item = makeItem();

    EXPECT_EQ(item->serviceName(), prefix + QString::number(number + 3));
    EXPECT_TRUE(waitUntil([&] { return watcher->registrations.contains(item->serviceName()); }));
}

TEST_F(SniRegistrationTest, HasNoLabelWhileItHasNoText) {
    startMonitors();
    const auto item = makeItem();
    StatusContent content = readout("");
    item->setContent(content);

    for (const char* name : {"XAyatanaLabel", "XAyatanaLabelGuide"}) {
        const QDBusMessage reply =
            client.call(item->serviceName(), QStringLiteral("/StatusNotifierItem"),
                        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                        {QStringLiteral("org.kde.StatusNotifierItem"), QString::fromLatin1(name)});
        EXPECT_EQ(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.UnknownProperty")) << name;
    }
    const QDBusMessage all = client.call(item->serviceName(), QStringLiteral("/StatusNotifierItem"),
                                         QStringLiteral("org.freedesktop.DBus.Properties"),
                                         QStringLiteral("GetAll"), {QStringLiteral("org.kde.StatusNotifierItem")});
    EXPECT_FALSE(qdbus_cast<QVariantMap>(all.arguments().at(0)).contains(QStringLiteral("XAyatanaLabel")));
}

TEST_F(SniRegistrationTest, RegistersAnewWhenItsTextDisappears) {
    startWatcher();
    startMonitors();
    const auto item = makeItem();
    item->setContent(readout());
    const QString before = item->serviceName();
    settle(*item);
    watcher->announcements.clear();

    item->setContent(readout(""));

    EXPECT_NE(item->serviceName(), before);
    EXPECT_TRUE(waitUntil([&] { return watcher->registrations.contains(item->serviceName()); }));
    settle(*item);
    EXPECT_FALSE(watcher->announcements.contains(QStringLiteral("XAyatanaNewLabel")));

    item->setContent(readout());
    EXPECT_TRUE(waitUntil([&] { return watcher->announcements.contains(QStringLiteral("XAyatanaNewLabel")); }));
}

}  // namespace
}  // namespace kestro
