#pragma once

#include "tests/desktop/shell_fixture.h"
#include "tests/desktop/status_item_client.h"

#include <QString>

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace kestro {

/// Kestro in a panel that hosts its items, operated through their menus.
struct MenuFixture : ShellFixture {
    MenuFixture() : ShellFixture(DesktopPanel::mate) {}

    std::optional<HostMenuEntry> entry(const QString& title, const QString& item) const {
        const HostMenuEntry menu = client.menu(client.waitForItem(item));
        const HostMenuEntry* found = menu.find(title);
        return found != nullptr ? std::optional(*found) : std::nullopt;
    }

    bool offers(const QString& title) const {
        return waitUntil([&] { return entry(title, mainItem).has_value(); });
    }

    bool checks(const QString& title) const {
        return waitUntil([&] {
            const auto found = entry(title, mainItem);
            return found && found->isChecked();
        });
    }

    void choose(const QString& title, const QString& item) const {
        const auto found = entry(title, item);
        ASSERT_TRUE(found) << title.toStdString();
        client.choose(client.waitForItem(item), found->id);
    }

    void choose(const QString& title) const { choose(title, mainItem); }

    void expectEndBy(int signal) {
        ::kill(static_cast<pid_t>(kestro->processId()), signal);
        ASSERT_TRUE(ends());
    }

    const QString mainItem = QStringLiteral("kestro-main");
    const QString keepAwakeItem = QStringLiteral("kestro-keep-awake");
    const QString activate = QStringLiteral("Activate Indefinitely");
    const QString deactivate = QStringLiteral("Deactivate Keep-Awake (Active (∞))");
    const QString systemOnly = QStringLiteral("System Only (Display May Sleep)");
    const StatusItemClient client{session};
};

}  // namespace kestro
