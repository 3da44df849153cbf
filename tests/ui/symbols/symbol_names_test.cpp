#include "core/model/fan_curve.h"
#include "core/model/menubar_enumerations.h"
#include "core/model/settings_enumerations.h"
#include "core/model/system_power_mode.h"
#include "core/readout/menubar_readout.h"
#include "tests/support/symbol_words.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

/// Single words that are not symbol names.
const WordsByFile otherWords{
    {QStringLiteral("ui/paint/focus_ring.cpp"), {QStringLiteral("kestroFocusRingHost")}},
    {QStringLiteral("ui/menus/menu_style.h"),
     {QStringLiteral("kestroMenuHeader"), QStringLiteral("kestroMenuShortcut"),
      QStringLiteral("kestroMenuSymbol")}},
    {QStringLiteral("ui/dashboard/display_figure.cpp"), {QStringLiteral("percent")}},
    {QStringLiteral("ui/settings/module_row.cpp"), {QStringLiteral("up"), QStringLiteral("down")}},
    {QStringLiteral("ui/theme/kestro_fonts.cpp"), {QStringLiteral("maxp")}},
    {QStringLiteral("ui/symbols/symbol_painter.cpp"), {QStringLiteral("currentColor")}},
    {QStringLiteral("ui/widgets/core_matrix_view.cpp"), {QStringLiteral("offline")}},
    {QStringLiteral("ui/widgets/metric_gauge.cpp"), {QStringLiteral("percent")}},
};

template <typename E>
void expectSymbolForEachCase() {
    for (const E value : allCases<E>()) {
        EXPECT_TRUE(SymbolPainter::contains(QString::fromUtf8(iconName(value)))) << iconName(value);
    }
}

TEST(SymbolNames, EveryNameInTheViewsHasADrawing) {
    expectOnlySymbolNames(QStringLiteral("ui"), otherWords, {});
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
    for (const char* folder : {"core", "ui", "shell", "app"}) {
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
