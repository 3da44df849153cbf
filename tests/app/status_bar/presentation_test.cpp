#include "app/status_bar/notifier/presentation.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

StatusContent readout() {
    StatusContent content;
    content.symbol = StatusSymbol{QStringLiteral("waveform.path.ecg"), QStringLiteral("Kestro"), 12};
    content.title.text = QStringLiteral(" RAM 42% · 1420 RPM");
    content.widestTitle = QStringLiteral(" RAM 100% · 9999 RPM");
    content.toolTip = QStringLiteral("RAM 42%\nCPU 18%");
    content.glance = StatusGlance{42, 18};
    return content;
}

TEST(NotifierPresentation, LeavesTheSymbolBesideALabel) {
    const NotifierPresentation shown = notifierPresentation(readout(), true);

    EXPECT_EQ(shown.title, QStringLiteral("Kestro"));
    EXPECT_EQ(shown.label, QStringLiteral("RAM 42% · 1420 RPM"));
    EXPECT_EQ(shown.labelGuide, QStringLiteral("RAM 100% · 9999 RPM"));
    EXPECT_EQ(shown.icon, NotifierIcon(QStringLiteral("waveform.path.ecg")));
    EXPECT_TRUE(shown.toolTipText.isEmpty());
    EXPECT_EQ(shown.accessibleDescription, QStringLiteral("Kestro, RAM 42% · 1420 RPM"));
}

TEST(NotifierPresentation, PaintsTheValuesWhereNoLabelIsShown) {
    const NotifierPresentation shown = notifierPresentation(readout(), false);

    EXPECT_EQ(shown.icon, NotifierIcon(StatusGlance{42, 18}));
    EXPECT_EQ(shown.toolTipText, QStringLiteral("RAM 42%\nCPU 18%"));
    EXPECT_EQ(shown.label, QStringLiteral("RAM 42% · 1420 RPM"));
}

TEST(NotifierPresentation, PaintsTheValuesOnEveryHostWhenThereIsNoText) {
    StatusContent content = readout();
    content.title.text.clear();

    const NotifierPresentation shown = notifierPresentation(content, true);

    EXPECT_EQ(shown.icon, NotifierIcon(StatusGlance{42, 18}));
    EXPECT_EQ(shown.toolTipText, QStringLiteral("RAM 42%\nCPU 18%"));
}

TEST(NotifierPresentation, UsesTheTitleWhereThereIsNoToolTip) {
    StatusContent content = readout();
    content.toolTip.clear();

    EXPECT_EQ(notifierPresentation(content, false).toolTipText, QStringLiteral("RAM 42% · 1420 RPM"));
}

TEST(NotifierPresentation, NeedsNoIconBesideALabelButAlwaysOneWithout) {
    StatusContent content = readout();
    content.symbol.reset();
    content.glance.reset();

    EXPECT_EQ(notifierPresentation(content, true).icon, NotifierIcon());
    EXPECT_EQ(notifierPresentation(content, false).icon, NotifierIcon(QStringLiteral("waveform.path.ecg")));
    EXPECT_EQ(notifierPresentation(content, true).title, QStringLiteral("Kestro"));
}

TEST(NotifierPresentation, EscapesMarkup) {
    EXPECT_EQ(escapedMarkup(QStringLiteral("<b>a</b> & \"c\"\nd")),
              QStringLiteral("&lt;b&gt;a&lt;/b&gt; &amp; &quot;c&quot;<br/>d"));
}

TEST(HostShowsLabels, ForProcessesThatAreKnownTo) {
    for (const char* host :
         {"mate-panel", "gnome-shell", "xapp-sn-watcher", "indicator-appli", "ayatana-indicat"}) {
        EXPECT_TRUE(hostShowsLabels(QString::fromLatin1(host), {})) << host;
    }
}

TEST(HostShowsLabels, NotForOthersWhateverTheDesktop) {
    for (const char* host :
         {"kded5", "plasmashell", "xfce4-panel", "lxqt-panel", "waybar", "swaybar", "python3"}) {
        EXPECT_FALSE(hostShowsLabels(QString::fromLatin1(host), {QStringLiteral("GNOME")})) << host;
    }
}

TEST(HostShowsLabels, ByTheDesktopWhenTheProcessIsHidden) {
    EXPECT_TRUE(hostShowsLabels(QString(), {QStringLiteral("ubuntu"), QStringLiteral("GNOME")}));
    EXPECT_TRUE(hostShowsLabels(QString(), {QStringLiteral("MATE")}));
    EXPECT_FALSE(hostShowsLabels(QString(), {QStringLiteral("KDE")}));
    EXPECT_FALSE(hostShowsLabels(QString(), {}));
}

}  // namespace
}  // namespace kestro
