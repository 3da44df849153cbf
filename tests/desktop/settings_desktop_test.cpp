#include "tests/desktop/shell_fixture.h"
#include "tests/desktop/status_item_client.h"

#include <QColor>
#include <QThread>

#include <gtest/gtest.h>

#include <array>
#include <csignal>

namespace kestro {
namespace {

/// A point in the settings window, and the area around it that shows the setting.
struct Place {
    QPoint point;
    QRect around;
};

/// A user without preferences changes settings with the mouse, on a desktop with a panel.
class SettingsOnTheDesktop : public ShellFixture {
protected:
    SettingsOnTheDesktop() : ShellFixture(DesktopPanel::mate) {}

    void choose(const QString& item, const char* entry) {
        const StatusItemClient client(session);
        const HostMenuEntry menu = client.menu(client.waitForItem(item));
        const HostMenuEntry* found = menu.find(QString::fromUtf8(entry));
        ASSERT_NE(found, nullptr) << entry;
        client.choose(client.waitForItem(item), found->id);
    }

    QPoint corner() const { return frame(settings).value_or(QRect()).topLeft(); }

    void clickAt(QPoint inWindow) const { session.click(corner() + inWindow); }

    void openTab(int index) const {
        constexpr int firstTab = 76;
        constexpr int pitch = 118;
        clickAt({firstTab + index * pitch, 70});
        rest();
    }

    /// Moves the pointer off every control and waits until hover and slide animations have ended.
    void rest() const {
        session.moveTo(corner() + QPoint(430, 746));
        QThread::msleep(400);
    }

    QImage look(const QRect& inWindow, const char* name) const {
        return session.screenshot(QString::fromUtf8(name)).copy(inWindow.translated(corner()));
    }

    /// The button of the "Turbo" profile. Its vertical position depends on the number of fans; it is found by
    /// the chosen profile beside it, the first accent-coloured element below the tabs.
    Place turbo() const {
        const QImage picture = session.screenshot(QStringLiteral("settings-cooling"));
        const QPoint origin = corner();
        for (int y = 110; y < 500; ++y) {
            const QColor color = picture.pixelColor(origin + QPoint(200, y));
            if (color.blue() - color.red() > 40) {
                return {{596, y + 17}, {20, y - 2, 820, 38}};
            }
        }
        return {};
    }

    bool saved(const char* json) const {
        return waitUntil([&] { return preferences().contains(QString::fromUtf8(json)); });
    }
};

TEST_F(SettingsOnTheDesktop, OpensFromTheMenuFromTheExtraItemAndByCommand) {
    launch();

    choose(QStringLiteral("kestro-main"), "Settings...");
    ASSERT_TRUE(appears(settings));
    session.key(QStringLiteral("ctrl+w"));
    ASSERT_TRUE(disappears(settings));

    choose(QStringLiteral("kestro-keep-awake"), "Keep-Awake Settings...");
    ASSERT_TRUE(appears(settings));
    EXPECT_TRUE(saved("\"Keep-Awake\""));
    session.key(QStringLiteral("ctrl+w"));
    ASSERT_TRUE(disappears(settings));

    command("settings-cooling");
    ASSERT_TRUE(appears(settings));
    EXPECT_TRUE(saved("\"Cooling & Fans\""));
}

TEST_F(SettingsOnTheDesktop, RestoresEveryChangeAfterACrash) {
    enum Tab { menubarTab, keepAwakeTab, coolingTab, powerTab, dashboardTab, appearanceTab, sensorsTab };
    constexpr std::array changed{menubarTab, keepAwakeTab, coolingTab, dashboardTab, appearanceTab};
    launch();
    command("settings-cooling");
    ASSERT_TRUE(appears(settings));
    rest();
    std::array<Place, sensorsTab + 1> places;
    places[menubarTab] = {{320, 576}, {20, 559, 482, 34}};
    places[keepAwakeTab] = {{226, 388}, {20, 371, 820, 34}};
    places[coolingTab] = turbo();
    places[dashboardTab] = {{594, 434}, {20, 415, 820, 40}};
    places[appearanceTab] = {{590, 173}, {20, 140, 820, 90}};
    ASSERT_FALSE(places[coolingTab].point.isNull());

    std::array<QImage, sensorsTab + 1> before;
    std::array<QImage, sensorsTab + 1> set;
    for (const Tab tab : changed) {
        openTab(tab);
        before[tab] = look(places[tab].around, "settings-before");
        clickAt(places[tab].point);
        rest();
    }
    for (const Tab tab : changed) {
        openTab(tab);
        set[tab] = look(places[tab].around, "settings-set");
        EXPECT_NE(set[tab], before[tab]) << tab;
    }
    openTab(sensorsTab);

    QThread::sleep(2);
    ::kill(static_cast<pid_t>(kestro->processId()), SIGKILL);
    ASSERT_TRUE(ends());
    for (const char* kept : {"\" / \"", "\"15 Minutes\"", "\"Turbo\"", "\"kestro.processCountLimit\": 8",
                             "\"Velvet Lilac\"", "\"Sensors\""}) {
        EXPECT_TRUE(preferences().contains(QString::fromUtf8(kept))) << kept;
    }
    launch();

    const StatusItemClient client(session);
    const QString item = client.waitForItem();
    EXPECT_TRUE(waitUntil([&] { return client.label(item).contains(QStringLiteral(" / ")); }))
        << client.label(item).toStdString();
    const HostMenuEntry menu = client.menu(item);
    const HostMenuEntry* profile = menu.find(QStringLiteral("Turbo"));
    EXPECT_TRUE(profile != nullptr && profile->isChecked());
    choose(QStringLiteral("kestro-main"), "Settings...");
    ASSERT_TRUE(appears(settings));
    rest();
    session.screenshot(QStringLiteral("settings-again"));
    for (const Tab tab : changed) {
        openTab(tab);
        EXPECT_EQ(look(places[tab].around, "settings-found"), set[tab]) << tab;
    }
}

}  // namespace
}  // namespace kestro
