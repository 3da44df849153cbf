#include "tests/support/symbol_words.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(SymbolNames, EveryNameInTheShellHasADrawing) {
    const WordsByFile otherWords{
        {QStringLiteral("shell/linux/notifier/menu_tree.cpp"),
         {QStringLiteral("enabled"), QStringLiteral("label"), QStringLiteral("minus"), QStringLiteral("plus"),
          QStringLiteral("separator"), QStringLiteral("shortcut"), QStringLiteral("submenu"),
          QStringLiteral("type")}},
    };
    const QSet<QString> foreign{
        QStringLiteral("shell/linux/accessibility_monitor.cpp"),
        QStringLiteral("shell/linux/bus_single_instance.cpp"),
        QStringLiteral("shell/linux/bus_single_instance.h"),
        QStringLiteral("shell/linux/gtk_theme.cpp"),
        QStringLiteral("shell/linux/linux_window_system.cpp"),
        QStringLiteral("shell/linux/notifier/bus_object.cpp"),
        QStringLiteral("shell/linux/notifier/host_monitor.cpp"),
        QStringLiteral("shell/linux/notifier/watcher_reply.cpp"),
        QStringLiteral("shell/linux/notifier/host_monitor.h"),
        QStringLiteral("shell/linux/notifier/menu_object.cpp"),
        QStringLiteral("shell/linux/notifier/menu_tree.h"),
        QStringLiteral("shell/linux/notifier/sni_status_item.cpp"),
        QStringLiteral("shell/linux/panel_anchor.cpp"),
        QStringLiteral("shell/linux/panel_scheme_monitor.cpp"),
        QStringLiteral("shell/linux/platform_choice.cpp"),
        QStringLiteral("shell/linux/readout/bus_readout_service.cpp"),
        QStringLiteral("shell/linux/readout/bus_readout_service.h"),
        QStringLiteral("shell/linux/readout/readout_clients.cpp"),
        QStringLiteral("shell/linux/readout/readout_properties.cpp"),
        QStringLiteral("shell/linux/settings_portal.h"),
        QStringLiteral("shell/linux/xfce_panel_monitor.cpp"),
        QStringLiteral("shell/macos/mac_window_system.cpp"),
    };

    expectOnlySymbolNames(QStringLiteral("shell"), otherWords, foreign);
}

}  // namespace
}  // namespace kestro
