#include "tests/desktop/accessibility_client.h"
#include "tests/desktop/shell_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <span>
#include <utility>

namespace kestro {
namespace {

/// What a screen reader says about a window, as the beginnings of the names.
using Starts = std::vector<QString>;

class AccessibilityOnTheDesktop : public ShellFixture {
protected:
    AccessibilityOnTheDesktop() : reader(session) {}

    /// The expected beginnings that no visible object's name has.
    static QStringList missing(const std::vector<SpokenObject>& shown, const Starts& starts) {
        QStringList absent;
        for (const QString& start : starts) {
            if (std::ranges::none_of(shown,
                                     [&](const SpokenObject& object) { return object.name.startsWith(start); })) {
                absent.append(start);
            }
        }
        return absent;
    }

    /// Expects every visible object to have a name, and the given names among them.
    void expectNamed(const QString& title, const Starts& starts) {
        std::vector<SpokenObject> shown;
        waitUntil([&] {
            shown = reader.shownIn(title);
            return missing(shown, starts).isEmpty();
        });
        EXPECT_EQ(missing(shown, starts).join(QStringLiteral("| ")).toStdString(), "");
        for (const SpokenObject& object : shown) {
            const bool isContainer = object.role == QStringLiteral("filler") && !object.isFocusable;
            EXPECT_TRUE(isContainer || !object.name.isEmpty())
                << object.role.toStdString() << " at " << object.path.toStdString();
        }
        ASSERT_FALSE(shown.empty());
        EXPECT_EQ(shown.front().role.toStdString(), "frame");
    }

    /// The first visible object of the settings with this role whose name starts with `start`.
    std::optional<SpokenObject> setting(const char* role, const char* start = "") const {
        for (const SpokenObject& object : reader.shownIn(settings)) {
            if (object.role == QString::fromUtf8(role) && object.name.startsWith(QString::fromUtf8(start))) {
                return object;
            }
        }
        return std::nullopt;
    }

    bool hears(const QString& path, const char* detail, bool isOn) const {
        return waitUntil([&] {
            return std::ranges::any_of(reader.heard(), [&](const ChangeAnnouncement& heard) {
                return heard.path == path && heard.detail == QString::fromLatin1(detail) && heard.isOn == isOn;
            });
        });
    }

    /// Whether the names in a window are different that many times in a row, when asked.
    bool hasNewNames(const QString& title, int times) const {
        QStringList last = names(title);
        int changes = 0;
        return waitUntil([&] {
            const QStringList before = std::exchange(last, names(title));
            changes += last == before ? 0 : 1;
            return changes >= times;
        });
    }

    QStringList names(const QString& title) const {
        QStringList found;
        for (const SpokenObject& object : reader.shownIn(title)) {
            found.append(object.name);
        }
        return found;
    }

    /// The objects of a window that announced a name or a value after the first `ignored` announcements.
    QStringList announcedNames(const QString& title, std::size_t ignored) const {
        const auto after = std::span(reader.heard()).subspan(ignored);
        QStringList announced;
        for (const SpokenObject& object : reader.shownIn(title)) {
            const bool isHeard = std::ranges::any_of(after, [&](const ChangeAnnouncement& heard) {
                return heard.path == object.path && heard.detail.startsWith(QStringLiteral("accessible-"));
            });
            announced.append(isHeard ? QStringList(object.name) : QStringList());
        }
        return announced;
    }

    AccessibilityClient reader;
};

Starts startsOf(std::initializer_list<const char*> texts) {
    Starts starts;
    for (const char* text : texts) {
        starts.push_back(QString::fromUtf8(text));
    }
    return starts;
}

TEST_F(AccessibilityOnTheDesktop, NamesEveryValueAndControlOfThePopover) {
    ASSERT_TRUE(reader.isConnected());
    launch();
    notify(QStringLiteral("togglePopover"));
    ASSERT_TRUE(appears(popover));

    expectNamed(popover, startsOf({"Quick Glance Popover", "Settings", "Open Dashboard", "CPU & Clusters, ",
                                   "Performance, ", "Unified Memory, ", "Used, ", "Peak Die, ", "Profile: ",
                                   "Download, ", "Upload, ", "Storage, ", "Battery, ", "Keep Awake", "Quit"}));
}

TEST_F(AccessibilityOnTheDesktop, NamesEveryValueAndControlOfTheDashboard) {
    ASSERT_TRUE(reader.isConnected());
    launch();
    notify(QStringLiteral("showDashboard"));
    ASSERT_TRUE(appears(dashboard));

    expectNamed(dashboard, startsOf({"Settings",
                                     "Pin Window on Top",
                                     "Toggle Windowed Full Screen",
                                     "Close Dashboard",
                                     "Compute",
                                     "CPU load, ",
                                     "CPU history, now ",
                                     "User, ",
                                     "System, ",
                                     "Idle, ",
                                     "Performance, ",
                                     "Core loads",
                                     "Core 0, ",
                                     "Cooling",
                                     "Temperatures, ",
                                     "SoC Junction Temp, ",
                                     "Peak Die Temp, ",
                                     "Battery Pack Temp, ",
                                     "Thermal Pressure, ",
                                     "Profile, ",
                                     "Memory",
                                     "Memory pressure, ",
                                     "Storage, ",
                                     "Active, ",
                                     "Wired, ",
                                     "Compressed, ",
                                     "Inactive, ",
                                     "Free, ",
                                     "Swap, ",
                                     "I/O & Power",
                                     "Interface, ",
                                     "Download, ",
                                     "Download history, ",
                                     "Upload, ",
                                     "Upload history, ",
                                     "Local IP, ",
                                     "Battery, ",
                                     "Condition, ",
                                     "Power Mode, ",
                                     "Uptime, ",
                                     "Activity",
                                     "Sort by CPU Load",
                                     "Sort by Memory",
                                     "Refreshed every 1.0s"}));
}

TEST_F(AccessibilityOnTheDesktop, AnnouncesAToggledChip) {
    ASSERT_TRUE(reader.isConnected());
    launch();
    notify(QStringLiteral("showDashboard"));
    expectNamed(dashboard, startsOf({"Pin Window on Top"}));
    const auto program = reader.program();
    const SpokenObject* pin = program->find(QStringLiteral("Pin Window on Top"));
    ASSERT_NE(pin, nullptr);
    EXPECT_FALSE(pin->isChecked);
    reader.listen();

    reader.press(*pin);

    EXPECT_TRUE(hears(pin->path, "checked", true));
    EXPECT_TRUE(waitUntil([&] { return hasState(dashboard, "_NET_WM_STATE_ABOVE"); }));
    const auto after = reader.program();
    ASSERT_NE(after->find(QStringLiteral("Unpin Window")), nullptr);
    EXPECT_TRUE(after->find(QStringLiteral("Unpin Window"))->isChecked);
}

TEST_F(AccessibilityOnTheDesktop, AnnouncesAMovedSlider) {
    ASSERT_TRUE(reader.isConnected());
    launch();
    notify(QStringLiteral("showSettings"), atTab(QStringLiteral("Keep-Awake")));
    ASSERT_TRUE(waitUntil([&] { return setting("slider").has_value(); }));
    const SpokenObject moved = *setting("slider");
    reader.listen();

    reader.setValue(moved, 35);

    EXPECT_TRUE(hears(moved.path, "accessible-value", false));
    EXPECT_TRUE(waitUntil([&] { return preferences().contains(QStringLiteral("35")); }));
}

TEST_F(AccessibilityOnTheDesktop, AnnouncesAChosenTab) {
    ASSERT_TRUE(reader.isConnected());
    launch();
    notify(QStringLiteral("showSettings"), atTab(QStringLiteral("Keep-Awake")));
    ASSERT_TRUE(waitUntil([&] { return setting("page tab", "Power").has_value(); }));
    const SpokenObject tab = *setting("page tab", "Power");
    reader.listen();

    reader.press(tab);

    EXPECT_TRUE(hears(tab.path, "selected", true));
}

TEST_F(AccessibilityOnTheDesktop, AnnouncesAChosenSegment) {
    ASSERT_TRUE(reader.isConnected());
    launch();
    notify(QStringLiteral("showSettings"), atTab(QStringLiteral("Dashboard")));
    ASSERT_TRUE(waitUntil([&] { return setting("radio button", "Memory").has_value(); }));
    const SpokenObject segment = *setting("radio button", "Memory");
    reader.listen();

    reader.press(segment);

    EXPECT_TRUE(hears(segment.path, "checked", true));
}

TEST_F(AccessibilityOnTheDesktop, SpeaksTheCurrentFiguresWithoutAnnouncingEachChange) {
    ASSERT_TRUE(reader.isConnected());
    launch();
    reader.listen();
    for (const auto& [notification, title] : {std::pair("showDashboard", dashboard), {"togglePopover", popover}}) {
        notify(QString::fromLatin1(notification));
        ASSERT_TRUE(appears(title));
        expectNamed(title, {});
        // What its appearance announced has been heard by then.
        ASSERT_TRUE(hasNewNames(title, 1)) << title.toStdString();
        QCoreApplication::processEvents();
        const std::size_t ignored = reader.heard().size();

        EXPECT_TRUE(hasNewNames(title, 3)) << title.toStdString();

        EXPECT_EQ(announcedNames(title, ignored).join(QStringLiteral("| ")).toStdString(), "");
    }
}

}  // namespace
}  // namespace kestro
