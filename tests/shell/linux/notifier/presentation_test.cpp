#include "shell/linux/notifier/presentation.h"

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

TEST(NotifierPresentation, KeepsTheSymbolBesideALabel) {
    const NotifierPresentation shown = notifierPresentation(readout(), LabelSupport::shown);

    EXPECT_EQ(shown.title, QStringLiteral("Kestro"));
    EXPECT_EQ(shown.label, QStringLiteral("RAM 42% · 1420 RPM"));
    EXPECT_EQ(shown.labelGuide, QStringLiteral("RAM 100% · 9999 RPM"));
    EXPECT_EQ(shown.icon, NotifierIcon(NotifierSymbol{QStringLiteral("waveform.path.ecg"), true}));
    EXPECT_TRUE(shown.toolTipText.isEmpty());
    EXPECT_EQ(shown.accessibleDescription, QStringLiteral("Kestro, RAM 42% · 1420 RPM"));
}

TEST(NotifierPresentation, PaintsTheValuesWhereNoLabelIsShown) {
    const NotifierPresentation shown = notifierPresentation(readout(), LabelSupport::hidden);

    EXPECT_EQ(shown.icon, NotifierIcon(StatusGlance{42, 18}));
    EXPECT_EQ(shown.toolTipText, QStringLiteral("RAM 42%\nCPU 18%"));
    EXPECT_EQ(shown.label, QStringLiteral("RAM 42% · 1420 RPM"));
}

TEST(NotifierPresentation, KeepsTheSymbolOnEveryHostWithoutText) {
    StatusContent content = readout();
    content.title.text.clear();

    for (const auto labels : {LabelSupport::hidden, LabelSupport::shown, LabelSupport::shownWithoutMargin}) {
        const NotifierPresentation shown = notifierPresentation(content, labels);

        ASSERT_TRUE(std::holds_alternative<NotifierSymbol>(shown.icon));
        EXPECT_EQ(std::get<NotifierSymbol>(shown.icon).name, QStringLiteral("waveform.path.ecg"));
        EXPECT_EQ(shown.toolTipText, QStringLiteral("RAM 42%\nCPU 18%"));
    }
}

TEST(NotifierPresentation, SpeaksTheFiguresOfABareIcon) {
    StatusContent content = readout();
    content.title.text.clear();
    content.spokenText = QStringLiteral("RAM 42% · 1420 RPM");

    for (const auto labels : {LabelSupport::hidden, LabelSupport::shown, LabelSupport::shownWithoutMargin}) {
        EXPECT_EQ(notifierPresentation(content, labels).accessibleDescription,
                  QStringLiteral("Kestro, RAM 42% · 1420 RPM"));
    }
}

TEST(NotifierPresentation, SpeaksOnlyTheNameWithoutFigures) {
    StatusContent content = readout();
    content.title.text.clear();

    EXPECT_EQ(notifierPresentation(content, LabelSupport::hidden).accessibleDescription, QStringLiteral("Kestro"));
}

TEST(NotifierPresentation, ShowsTheSymbolUntilThereAreValues) {
    StatusContent content = readout();
    content.glance = StatusGlance();

    EXPECT_EQ(notifierPresentation(content, LabelSupport::hidden).icon,
              NotifierIcon(NotifierSymbol{QStringLiteral("waveform.path.ecg"), false}));
}

TEST(NotifierPresentation, UsesTheTitleWithoutAToolTip) {
    StatusContent content = readout();
    content.toolTip.clear();

    EXPECT_EQ(notifierPresentation(content, LabelSupport::hidden).toolTipText,
              QStringLiteral("RAM 42% · 1420 RPM"));
}

TEST(NotifierPresentation, NeedsAnIconOnlyWithoutALabel) {
    StatusContent content = readout();
    content.symbol.reset();
    content.glance.reset();

    EXPECT_EQ(notifierPresentation(content, LabelSupport::shown).icon, NotifierIcon());
    EXPECT_EQ(notifierPresentation(content, LabelSupport::hidden).icon,
              NotifierIcon(NotifierSymbol{QStringLiteral("waveform.path.ecg"), false}));
    EXPECT_EQ(notifierPresentation(content, LabelSupport::shown).title, QStringLiteral("Kestro"));
}

TEST(NotifierPresentation, KeepsASymbolWithoutTextAsTallAsItsNeighbours) {
    StatusContent content = readout();
    content.title.text.clear();
    content.glance.reset();
    const QString symbol = content.symbol->name;

    EXPECT_EQ(notifierPresentation(content, LabelSupport::shown).icon, NotifierIcon(NotifierSymbol{symbol, true}));
    EXPECT_EQ(notifierPresentation(content, LabelSupport::hidden).icon,
              NotifierIcon(NotifierSymbol{symbol, false}));
}

TEST(NotifierPresentation, EscapesMarkup) {
    EXPECT_EQ(escapedMarkup(QStringLiteral("<b>a</b> & \"c\"\nd")),
              QStringLiteral("&lt;b&gt;a&lt;/b&gt; &amp; &quot;c&quot;<br/>d"));
}

TEST(NotifierPresentation, SeparatesALabelFromTheNextItem) {
    const NotifierPresentation shown = notifierPresentation(readout(), LabelSupport::shownWithoutMargin);
    StatusContent symbolOnly = readout();
    symbolOnly.title.text.clear();

    EXPECT_EQ(shown.label, QStringLiteral("RAM 42% · 1420 RPM "));
    EXPECT_EQ(shown.labelGuide, QStringLiteral("RAM 100% · 9999 RPM "));
    EXPECT_TRUE(notifierPresentation(symbolOnly, LabelSupport::shownWithoutMargin).label.isEmpty());
}

TEST(LabelSupport, DependsOnTheProcess) {
    for (const char* host : {"gnome-shell", "xapp-sn-watcher", "indicator-appli", "ayatana-indicat"}) {
        EXPECT_EQ(labelSupport(QString::fromLatin1(host), {}), LabelSupport::shown) << host;
    }
    for (const char* host : {"mate-panel", "notification-ar"}) {
        EXPECT_EQ(labelSupport(QString::fromLatin1(host), {}), LabelSupport::shownWithoutMargin) << host;
    }
}

TEST(LabelSupport, IsNotAssumedForOtherProcessesOnAnyDesktop) {
    for (const char* host :
         {"kded5", "plasmashell", "xfce4-panel", "lxqt-panel", "waybar", "swaybar", "python3"}) {
        EXPECT_EQ(labelSupport(QString::fromLatin1(host), {QStringLiteral("GNOME")}), LabelSupport::hidden)
            << host;
    }
}

TEST(LabelSupport, DependsOnTheDesktopWhenTheProcessIsHidden) {
    EXPECT_EQ(labelSupport(QString(), {QStringLiteral("ubuntu"), QStringLiteral("GNOME")}), LabelSupport::shown);
    EXPECT_EQ(labelSupport(QString(), {QStringLiteral("MATE")}), LabelSupport::shownWithoutMargin);
    EXPECT_EQ(labelSupport(QString(), {QStringLiteral("KDE")}), LabelSupport::hidden);
    EXPECT_EQ(labelSupport(QString(), {}), LabelSupport::hidden);
}

TEST(NotifierPresentation, ShowsAndSpeaksTheHelpEvenBesideAVisibleTitle) {
    StatusContent content;
    content.title.text = QStringLiteral("14m");
    content.toolTip = QStringLiteral("Keep-Awake: Active");
    content.help = QStringLiteral("held by GNOME");

    EXPECT_EQ(notifierPresentation(content, LabelSupport::shown).toolTipText, QStringLiteral("held by GNOME"));
    const auto unlabelled = notifierPresentation(content, LabelSupport::hidden);
    EXPECT_EQ(unlabelled.toolTipText, QStringLiteral("Keep-Awake: Active\nheld by GNOME"));
    EXPECT_EQ(unlabelled.accessibleDescription, QStringLiteral("Kestro, 14m, held by GNOME"));
}

}  // namespace
}  // namespace kestro
