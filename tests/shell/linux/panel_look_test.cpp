#include "shell/linux/panel_look.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

TEST(PanelColors, AreBrightOnDarkAndDarkOnLightPanels) {
    EXPECT_GT(panelColor(StatusTitleColor::label, PanelScheme::dark).lightnessF(), 0.85);
    EXPECT_LT(panelColor(StatusTitleColor::label, PanelScheme::light).lightnessF(), 0.2);
    EXPECT_NEAR(panelColor(StatusTitleColor::secondaryLabel, PanelScheme::dark).alphaF(), 0.62, 0.001);
    EXPECT_EQ(panelColor(StatusTitleColor::orange, PanelScheme::dark).rgb(), qRgb(255, 158, 10));
    EXPECT_EQ(panelColor(StatusTitleColor::orange, PanelScheme::light).rgb(), qRgb(179, 94, 0));
}

TEST(PanelLook, PrefersTheHostsOwnSettingToTheDesktops) {
    EXPECT_EQ(panelLook({{}, {}, false, true, false}), (PanelLook{PanelScheme::dark, true}));
    EXPECT_EQ(panelLook({{}, {}, true, false, true}), (PanelLook{PanelScheme::light, true}));
    EXPECT_EQ(panelLook({{}, {}, true, {}, false}), (PanelLook{PanelScheme::dark, false}));
    EXPECT_EQ(panelLook({{}, {}, {}, {}, true}), (PanelLook{PanelScheme::dark, false}));
    EXPECT_EQ(panelLook({{}, {}, {}, {}, false}), (PanelLook{PanelScheme::light, false}));
}

TEST(PanelLook, RecognisesPanelsThatAreAlwaysDark) {
    const PanelLook dark{PanelScheme::dark, true};
    EXPECT_EQ(panelLook({QStringLiteral("gnome-shell"), {}, false, {}, false}), dark);
    EXPECT_EQ(panelLook({{}, {QStringLiteral("Unity")}, false, {}, false}), dark);
}

TEST(PanelLook, RecognisesXfcesPanelInEverySession) {
    EXPECT_TRUE(isXfcePanel(QStringLiteral("xfce4-panel"), {}));
    EXPECT_TRUE(isXfcePanel(QStringLiteral("wrapper-2.0"), {QStringLiteral("openbox")}));
    EXPECT_TRUE(isXfcePanel(QStringLiteral("panel-2-systray"), {QStringLiteral("openbox")}));
    EXPECT_TRUE(isXfcePanel(QStringLiteral("panel-12-status"), {}));
    EXPECT_TRUE(isXfcePanel({}, {QStringLiteral("XFCE")}));
    EXPECT_FALSE(isXfcePanel(QStringLiteral("lxqt-panel"), {QStringLiteral("LXQt")}));
    EXPECT_FALSE(isXfcePanel(QStringLiteral("panel-applet"), {}));
    EXPECT_FALSE(isXfcePanel({}, {}));
}

}  // namespace
}  // namespace kestro
