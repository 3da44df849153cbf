#include "core/model/fan_curve.h"
#include "core/model/menubar_enumerations.h"
#include "core/model/settings_enumerations.h"
#include "core/model/system_power_mode.h"
#include "core/readout/menubar_readout.h"
#include "tests/support/places.h"
#include "ui/symbols/symbol_painter.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

namespace kestro {
namespace {

/// The single-word string literals in the sources of a folder, by file path relative to the root.
QMap<QString, QSet<QString>> wordsBelow(const QString& folder) {
    QMap<QString, QSet<QString>> words;
    const QRegularExpression word(QStringLiteral("\"([a-z][A-Za-z0-9.]*)\""));
    const QString root = QString::fromStdString(sourceTree() + "/");
    QDirIterator files(root + folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        static const QRegularExpression include(QStringLiteral("^#include .*$"),
                                                QRegularExpression::MultilineOption);
        auto matches = word.globalMatch(QString::fromUtf8(file.readAll()).remove(include));
        while (matches.hasNext()) {
            words[file.fileName().sliced(root.size())].insert(matches.next().captured(1));
        }
    }
    return words;
}

/// Single words that are not symbol names.
const QMap<QString, QSet<QString>> kOtherWords{
    {QStringLiteral("app/status_bar/notifier/menu_tree.cpp"),
     {QStringLiteral("enabled"), QStringLiteral("label"), QStringLiteral("minus"), QStringLiteral("plus"),
      QStringLiteral("separator"), QStringLiteral("shortcut"), QStringLiteral("submenu"), QStringLiteral("type")}},
    {QStringLiteral("ui/paint/focus_ring.cpp"), {QStringLiteral("kestroFocusRingHost")}},
    {QStringLiteral("ui/menus/menu_style.h"),
     {QStringLiteral("kestroMenuHeader"), QStringLiteral("kestroMenuShortcut"),
      QStringLiteral("kestroMenuSymbol")}},
    {QStringLiteral("ui/dashboard/display_figure.cpp"), {QStringLiteral("percent")}},
    {QStringLiteral("ui/settings/module_row.cpp"), {QStringLiteral("up"), QStringLiteral("down")}},
    {QStringLiteral("ui/symbols/symbol_painter.cpp"), {QStringLiteral("currentColor")}},
    {QStringLiteral("ui/widgets/metric_gauge.cpp"), {QStringLiteral("percent")}},
};

/// Files whose words are identifiers of the bus, the display or other programs; none is a symbol name.
const QSet<QString> kForeignWords{
    QStringLiteral("app/accessibility_monitor.cpp"),
    QStringLiteral("app/command_channel.cpp"),
    QStringLiteral("app/application.cpp"),
    QStringLiteral("app/base/notification_names.h"),
    QStringLiteral("app/base/settings_portal.h"),
    QStringLiteral("app/single_instance.h"),
    QStringLiteral("app/status_bar/notifier/bus_object.cpp"),
    QStringLiteral("app/status_bar/notifier/host_monitor.cpp"),
    QStringLiteral("app/status_bar/notifier/host_monitor.h"),
    QStringLiteral("app/status_bar/notifier/menu_object.cpp"),
    QStringLiteral("app/status_bar/notifier/menu_tree.h"),
    QStringLiteral("app/status_bar/notifier/sni_status_item.cpp"),
    QStringLiteral("app/status_bar/panel_anchor.cpp"),
    QStringLiteral("app/status_bar/panel_scheme_monitor.cpp"),
    QStringLiteral("app/windows/popover_window.h"),
    QStringLiteral("app/windows/window_system.cpp"),
};

void expectOnlySymbols(const QString& file, const QSet<QString>& words) {
    for (const QString& word : words - kOtherWords.value(file)) {
        EXPECT_TRUE(SymbolPainter::contains(word)) << file.toStdString() << " names " << word.toStdString();
    }
}

template <typename E>
void expectSymbolForEachCase() {
    for (const E value : allCases<E>()) {
        EXPECT_TRUE(SymbolPainter::contains(QString::fromUtf8(iconName(value)))) << iconName(value);
    }
}

// A missing drawing is noticed only on screen, so every word that looks like a symbol name must have one.
TEST(SymbolNames, EveryNameInTheViewsHasADrawing) {
    const auto words = wordsBelow(QStringLiteral("ui"));

    for (auto file = words.begin(); file != words.end(); ++file) {
        expectOnlySymbols(file.key(), file.value());
    }
}

TEST(SymbolNames, EveryNameInTheApplicationHasADrawing) {
    const auto words = wordsBelow(QStringLiteral("app"));

    for (auto file = words.begin(); file != words.end(); ++file) {
        if (!kForeignWords.contains(file.key())) {
            expectOnlySymbols(file.key(), file.value());
            continue;
        }
        for (const QString& word : file.value()) {
            EXPECT_FALSE(SymbolPainter::contains(word))
                << file.key().toStdString() << " names " << word.toStdString();
        }
    }
}

TEST(SymbolNames, EveryNameInATableHasADrawing) {
    expectSymbolForEachCase<FanProfile>();
    expectSymbolForEachCase<SensorSource>();
    expectSymbolForEachCase<CurveShape>();
    expectSymbolForEachCase<CurvePreset>();
    expectSymbolForEachCase<SystemPowerMode>();
    expectSymbolForEachCase<MenubarModuleType>();
    for (const SettingsTab tab : allCases<SettingsTab>()) {
        EXPECT_TRUE(SymbolPainter::contains(QString::fromUtf8(icon(tab)))) << icon(tab);
    }
    for (const ReadoutSymbol& symbol : {readoutSymbol, emptyReadoutSymbol}) {
        EXPECT_TRUE(SymbolPainter::contains(QString::fromUtf8(symbol.name))) << symbol.name;
    }
}

TEST(SymbolNames, EveryDrawingIsUsed) {
    QSet<QString> named;
    for (const char* folder : {"core", "ui", "app"}) {
        for (const QSet<QString>& words : wordsBelow(QString::fromUtf8(folder))) {
            named |= words;
        }
    }

    for (const QString& name : SymbolPainter::names()) {
        EXPECT_TRUE(named.contains(name)) << name.toStdString();
    }
}

}  // namespace
}  // namespace kestro
