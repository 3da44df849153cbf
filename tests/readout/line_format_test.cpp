#include "readout/line_format.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

constexpr LineForm everyForm[] = {LineForm::plain, LineForm::json, LineForm::waybar, LineForm::i3bar,
                                  LineForm::genmon};

ShownReadout readout() {
    ShownReadout shown;
    shown.text = "RAM 42% · 1420 RPM";
    shown.widestText = "RAM 100% · 9999 RPM";
    shown.toolTip = "Kestro: RAM 42% · 1420 RPM";
    shown.symbol = "kestro-symbolic";
    shown.powerMode = "balanced";
    return shown;
}

TEST(LineFormat, PrintsThePlainText) {
    EXPECT_EQ(line(LineForm::plain, readout()), "RAM 42% · 1420 RPM");
    EXPECT_EQ(prologue(LineForm::plain), "");
}

TEST(LineFormat, PrintsAnObjectWithEveryPart) {
    ShownReadout shown = readout();
    EXPECT_EQ(line(LineForm::json, shown),
              R"({"text":"RAM 42% · 1420 RPM","widest_text":"RAM 100% · 9999 RPM",)"
              R"("tooltip":"Kestro: RAM 42% · 1420 RPM","symbol":"kestro-symbolic","power_mode":"balanced",)"
              R"("keep_awake":false})");

    shown.text = R"(<b>"\)";
    shown.symbol.clear();
    shown.isKeepAwakeActive = true;
    EXPECT_EQ(line(LineForm::json, shown),
              R"({"text":"<b>\"\\","widest_text":"RAM 100% · 9999 RPM",)"
              R"("tooltip":"Kestro: RAM 42% · 1420 RPM","symbol":"","power_mode":"balanced",)"
              R"("keep_awake":true})");
}

TEST(LineFormat, PrintsAnObjectForWaybar) {
    EXPECT_EQ(line(LineForm::waybar, readout()),
              R"({"text":"RAM 42% · 1420 RPM","tooltip":"Kestro: RAM 42% · 1420 RPM","class":["balanced"]})");

    ShownReadout awake = readout();
    awake.isKeepAwakeActive = true;
    awake.memoryPercent = 42;
    EXPECT_EQ(
        line(LineForm::waybar, awake),
        R"({"text":"RAM 42% · 1420 RPM","tooltip":"Kestro: RAM 42% · 1420 RPM","class":["balanced","keep-awake"],"percentage":42})");
}

TEST(LineFormat, KeepsThePercentageInItsRange) {
    ShownReadout shown = readout();
    shown.memoryPercent = 117;
    EXPECT_NE(line(LineForm::waybar, shown).find("\"percentage\":100"), std::string::npos);

    shown.memoryPercent = -5;
    EXPECT_NE(line(LineForm::waybar, shown).find("\"percentage\":0"), std::string::npos);
}

TEST(LineFormat, PrintsABlockOfReservedWidthForI3bar) {
    EXPECT_EQ(line(LineForm::i3bar, readout()),
              R"([{"name":"kestro","full_text":"RAM 42% · 1420 RPM","min_width":"RAM 100% · 9999 RPM"}],)");
}

TEST(LineFormat, AsksI3barNotToStopTheProgram) {
    EXPECT_EQ(prologue(LineForm::i3bar), "{\"version\":1,\"stop_signal\":0}\n[\n");
}

TEST(LineFormat, PrintsTagsForTheGenericMonitor) {
    EXPECT_EQ(line(LineForm::genmon, readout()),
              "<txt>RAM 42% · 1420 RPM</txt><txtclick>kestro-readout --show popover</txtclick>"
              "<tool>Kestro: RAM 42% · 1420 RPM</tool>");
}

TEST(LineFormat, IsEmptyWhileKestroIsNotRunning) {
    EXPECT_EQ(line(LineForm::plain, std::nullopt), "");
    EXPECT_EQ(line(LineForm::json, std::nullopt), "");
    EXPECT_EQ(line(LineForm::waybar, std::nullopt), "");
    EXPECT_EQ(line(LineForm::genmon, std::nullopt), "");
    EXPECT_EQ(line(LineForm::i3bar, std::nullopt), "[],");
}

TEST(LineFormat, ShowsTheNameInsteadOfABareSymbol) {
    ShownReadout shown = readout();
    shown.text.clear();

    EXPECT_EQ(line(LineForm::plain, shown), "Kestro");
    EXPECT_EQ(line(LineForm::genmon, shown).find("<txt>Kestro</txt>"), 0U);
    EXPECT_EQ(line(LineForm::json, shown).find(R"({"text":"",)"), 0U) << "a widget has the symbol";
}

TEST(LineFormat, EscapesMarkupAndQuotes) {
    ShownReadout shown = readout();
    shown.text = R"(a<b>&"\)";

    EXPECT_EQ(line(LineForm::plain, shown), R"(a<b>&"\)");
    EXPECT_NE(line(LineForm::waybar, shown).find(R"("text":"a&lt;b&gt;&amp;\"\\")"), std::string::npos);
    EXPECT_NE(line(LineForm::i3bar, shown).find(R"("full_text":"a<b>&\"\\")"), std::string::npos);
    EXPECT_EQ(line(LineForm::genmon, shown).find(R"(<txt>a&lt;b&gt;&amp;"\</txt>)"), 0U);
}

TEST(LineFormat, IsOneLineWhateverTheServiceSends) {
    ShownReadout shown = readout();
    shown.text = "a\nb\x1b[31m\x7f";
    shown.toolTip = "c\r\nd";
    shown.widestText = "\te";
    shown.symbol = "f\ng";
    shown.powerMode = "\"\n";

    for (const LineForm form : everyForm) {
        for (const char letter : line(form, shown)) {
            EXPECT_TRUE(static_cast<unsigned char>(letter) >= 0x20 && letter != 0x7f);
        }
    }
    EXPECT_EQ(line(LineForm::plain, shown), "a b [31m ");
}

}  // namespace
}  // namespace kestro
