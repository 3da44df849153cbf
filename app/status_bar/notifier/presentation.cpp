#include "app/status_bar/notifier/presentation.h"

#include <algorithm>
#include <array>

namespace kestro {

namespace {

/// Processes that own the watcher where items are shown with their labels.
constexpr std::array labelHosts{
    QLatin1StringView("gnome-shell"),      // with the AppIndicator extension; without it there is no watcher
    QLatin1StringView("mate-panel"),       //
    QLatin1StringView("notification-ar"),  // MATE's notification area as a process of its own
    QLatin1StringView("unity-panel-ser"),  //
    QLatin1StringView("indicator-appli"),  // Unity's and Budgie's indicator service
    QLatin1StringView("ayatana-indicat"),  // its successor
    QLatin1StringView("xapp-sn-watcher"),  // Cinnamon, and XApp applets elsewhere
};

/// Desktops on which every usual host shows labels.
constexpr std::array labelDesktops{QLatin1StringView("GNOME"), QLatin1StringView("Unity"),
                                   QLatin1StringView("MATE"), QLatin1StringView("X-Cinnamon")};

const QString productName = QStringLiteral("Kestro");
const QString defaultSymbol = QStringLiteral("waveform.path.ecg");

}  // namespace

NotifierPresentation notifierPresentation(const StatusContent& content, bool hostShowsLabels) {
    NotifierPresentation shown;
    shown.label = content.title.text.trimmed();
    shown.labelGuide = content.widestTitle.trimmed();
    const bool isTextVisible = hostShowsLabels && !shown.label.isEmpty();

    shown.title = productName;
    if (content.symbol && !content.symbol->accessibilityDescription.isEmpty()) {
        shown.title = content.symbol->accessibilityDescription;
    }
    const QString readout = content.toolTip.isEmpty() ? shown.label : content.toolTip;
    shown.toolTipTitle = shown.title;
    shown.toolTipText = isTextVisible ? QString() : readout;
    shown.accessibleDescription =
        shown.label.isEmpty() ? shown.title : shown.title + QLatin1StringView(", ") + shown.label;

    if (content.glance && !isTextVisible) {
        shown.icon = *content.glance;
    } else if (content.symbol) {
        shown.icon = content.symbol->name;
    } else if (!isTextVisible) {
        shown.icon = defaultSymbol;
    }
    return shown;
}

QString escapedMarkup(const QString& text) {
    QString escaped = text.toHtmlEscaped();
    return escaped.replace(QLatin1Char('\n'), QLatin1StringView("<br/>"));
}

bool hostShowsLabels(const QString& process, const QStringList& desktops) {
    if (!process.isEmpty()) {
        return std::ranges::any_of(labelHosts, [&](QLatin1StringView host) { return process == host; });
    }
    return std::ranges::any_of(labelDesktops,
                               [&](QLatin1StringView desktop) { return desktops.contains(desktop); });
}

}  // namespace kestro
