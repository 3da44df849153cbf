#include "tests/desktop/accessibility_client.h"
#include "tests/desktop/shell_fixture.h"
#include "tests/desktop/status_item_client.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <optional>

namespace kestro {
namespace {

/// A user without preferences changes settings with the mouse, on a desktop with a panel.
class SettingsOnTheDesktop : public ShellFixture {
protected:
    SettingsOnTheDesktop() : ShellFixture(DesktopPanel::mate), reader(session) {}

    void choose(const QString& item, const char* entry) {
        const StatusItemClient client(session);
        const HostMenuEntry menu = client.menu(client.waitForItem(item));
        const HostMenuEntry* found = menu.find(QString::fromUtf8(entry));
        ASSERT_NE(found, nullptr) << entry;
        client.choose(client.waitForItem(item), found->id);
    }

    /// The visible tab or radio button whose name starts like that.
    std::optional<SpokenObject> control(const char* role, const char* name) const {
        for (const SpokenObject& object : reader.shownIn(settings)) {
            if (object.role == QString::fromUtf8(role) && object.name.startsWith(QString::fromUtf8(name))) {
                return object;
            }
        }
        return std::nullopt;
    }

    void click(const char* role, const char* name) const {
        std::optional<SpokenObject> found;
        ASSERT_TRUE(waitUntil([&] { return (found = control(role, name)).has_value(); })) << name;
        session.click(reader.frame(*found).center());
    }

    bool isChosen(const char* name) const {
        const auto found = control("radio button", name);
        return found && found->isChecked;
    }

    bool saved(const char* json) const {
        return waitUntil([&] { return preferences().contains(QString::fromUtf8(json)); });
    }

    AccessibilityClient reader;
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

/// A tab, one of its choices, and what the preferences then contain.
struct Change {
    const char* tab;
    const char* choice;
    const char* stored;
};

TEST_F(SettingsOnTheDesktop, RestoresEveryChangeAfterACrash) {
    constexpr std::array<Change, 5> changes{{{"Menu Bar", "Slash", "\" / \""},
                                             {"Keep-Awake", "15 Minutes", "\"15 Minutes\""},
                                             {"Cooling & Fans", "Turbo", "\"Turbo\""},
                                             {"Dashboard", "Top 8", "\"kestro.processCountLimit\": 8"},
                                             {"Appearance", "Velvet Lilac", "\"Velvet Lilac\""}}};
    launch();
    command("settings-cooling");
    ASSERT_TRUE(appears(settings));
    for (const Change& change : changes) {
        click("page tab", change.tab);
        ASSERT_TRUE(waitUntil([&] { return control("radio button", change.choice).has_value(); }));
        EXPECT_FALSE(isChosen(change.choice));
        click("radio button", change.choice);
        EXPECT_TRUE(waitUntil([&] { return isChosen(change.choice); })) << change.choice;
    }
    click("page tab", "Sensors");

    for (const Change& change : changes) {
        EXPECT_TRUE(saved(change.stored)) << change.stored;
    }
    EXPECT_TRUE(saved("\"Sensors\""));
    ::kill(static_cast<pid_t>(kestro->processId()), SIGKILL);
    ASSERT_TRUE(ends());
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
    session.screenshot(QStringLiteral("settings-again"));
    for (const Change& change : changes) {
        click("page tab", change.tab);
        EXPECT_TRUE(waitUntil([&] { return isChosen(change.choice); })) << change.choice;
    }
}

}  // namespace
}  // namespace kestro
