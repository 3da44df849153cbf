#include "shell/macos/status_item_look.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

StatusContent readout() {
    StatusContent content;
    content.symbol = {QStringLiteral("waveform.path.ecg"), QStringLiteral("Kestro"), 12};
    content.title = {QString::fromUtf8(" RAM 42% · 1420 RPM"), 12, 500, StatusTitleColor::label};
    content.toolTip = QStringLiteral("RAM 42%\n1420 RPM");
    content.glance = StatusGlance{42, std::nullopt};
    return content;
}

TEST(NativeFontWeight, IsThatOfTheSystemFont) {
    EXPECT_EQ(nativeFontWeight(400), 0);
    EXPECT_EQ(nativeFontWeight(500), 0.23);
    EXPECT_EQ(nativeFontWeight(600), 0.3);
    EXPECT_EQ(nativeFontWeight(700), 0.4);
    EXPECT_EQ(nativeFontWeight(1000), 0.62);
}

TEST(NativeStatusContent, ShowsSymbolAndTitleAsTheyAre) {
    const NativeStatusContent native = nativeStatusContent(readout());

    EXPECT_EQ(native.symbol, "waveform.path.ecg");
    EXPECT_EQ(native.symbolDescription, "Kestro");
    EXPECT_EQ(native.symbolPointSize, 12);
    EXPECT_EQ(native.title, " RAM 42% · 1420 RPM");
    EXPECT_EQ(native.titlePointSize, 12);
    EXPECT_EQ(native.titleWeight, 0.23);
    EXPECT_EQ(native.titleColor, NativeColor::label);
}

TEST(NativeStatusContent, HasTheColoursOfTheMenuBar) {
    StatusContent content = readout();
    content.title.color = StatusTitleColor::secondaryLabel;
    EXPECT_EQ(nativeStatusContent(content).titleColor, NativeColor::secondaryLabel);
    content.title.color = StatusTitleColor::orange;
    EXPECT_EQ(nativeStatusContent(content).titleColor, NativeColor::systemOrange);
}

TEST(NativeStatusContent, HasNoToolTipThatRepeatsTheTitle) {
    StatusContent content = readout();
    EXPECT_EQ(nativeStatusContent(content).toolTip, "");
    content.help = QStringLiteral("No service holds the lock");
    EXPECT_EQ(nativeStatusContent(content).toolTip, "No service holds the lock");

    content.title.text.clear();

    EXPECT_EQ(nativeStatusContent(content).toolTip, "RAM 42%\n1420 RPM\nNo service holds the lock");
}

TEST(NativeStatusContent, SpeaksItsNameAndWhatItSays) {
    StatusContent content = readout();
    EXPECT_EQ(nativeStatusContent(content).accessibilityLabel, "Kestro, RAM 42% · 1420 RPM");
    content.symbol.reset();
    content.spokenText = QStringLiteral("Memory 42 percent");
    EXPECT_EQ(nativeStatusContent(content).accessibilityLabel, "Kestro, Memory 42 percent");
    EXPECT_EQ(nativeStatusContent(content).symbol, "");

    content.symbol = {QStringLiteral("cup.and.saucer"), QStringLiteral("Keep Awake"), 13};
    content.spokenText.clear();
    content.title.text.clear();

    EXPECT_EQ(nativeStatusContent(content).accessibilityLabel, "Keep Awake");
}

}  // namespace
}  // namespace kestro
