#include "shell/linux/notifier/presentation.h"

#include "core/readout/menubar_readout.h"

#include <algorithm>
#include <array>

namespace kestro {

namespace {

struct LabelHost {
    QLatin1StringView name;
    LabelSupport support;
};

/// Processes that own the watcher on desktops that show labels.
constexpr std::array labelProcesses{
    LabelHost{QLatin1StringView("gnome-shell"),
              LabelSupport::shown},  // there is a watcher only with AppIndicators
    LabelHost{QLatin1StringView("mate-panel"), LabelSupport::shownWithoutMargin},
    LabelHost{QLatin1StringView("notification-ar"), LabelSupport::shownWithoutMargin},  // MATE's notification area
    LabelHost{QLatin1StringView("unity-panel-ser"), LabelSupport::shown},
    LabelHost{QLatin1StringView("indicator-appli"), LabelSupport::shown},  // Unity's and Budgie's service
    LabelHost{QLatin1StringView("ayatana-indicat"), LabelSupport::shown},  // its successor
    LabelHost{QLatin1StringView("xapp-sn-watcher"), LabelSupport::shown},  // Cinnamon, and XApp applets elsewhere
};

/// Desktops whose usual hosts all show labels.
constexpr std::array labelDesktops{
    LabelHost{QLatin1StringView("GNOME"), LabelSupport::shown},
    LabelHost{QLatin1StringView("Unity"), LabelSupport::shown},
    LabelHost{QLatin1StringView("MATE"), LabelSupport::shownWithoutMargin},
    LabelHost{QLatin1StringView("X-Cinnamon"), LabelSupport::shown},
};

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace

NotifierPresentation notifierPresentation(const StatusContent& content, LabelSupport labels) {
    NotifierPresentation shown;
    shown.label = content.title.text.trimmed();
    shown.labelGuide = content.widestTitle.trimmed();
    const bool isTextVisible = labels != LabelSupport::hidden && !shown.label.isEmpty();

    shown.title = text(readoutSymbol.accessibilityDescription);
    if (content.symbol && !content.symbol->accessibilityDescription.isEmpty()) {
        shown.title = content.symbol->accessibilityDescription;
    }
    const QString readout = content.toolTip.isEmpty() ? shown.label : content.toolTip;
    shown.toolTipTitle = shown.title;
    shown.toolTipText = isTextVisible ? QString() : readout;
    if (!shown.toolTipText.isEmpty() && !content.help.isEmpty()) {
        shown.toolTipText += QLatin1Char('\n');
    }
    shown.toolTipText += content.help;
    const QString spoken = content.spoken();
    shown.accessibleDescription = spoken.isEmpty() ? shown.title : shown.title + QLatin1StringView(", ") + spoken;

    // Before the first sample there are no values, and a symbol says more than two dashes.
    const bool hasValues = content.glance && *content.glance != StatusGlance();
    if (hasValues && !isTextVisible && !shown.label.isEmpty()) {
        shown.icon = *content.glance;
    } else if (content.symbol) {
        shown.icon = NotifierSymbol{content.symbol->name, labels != LabelSupport::hidden};
    } else if (!isTextVisible) {
        shown.icon = NotifierSymbol{text(readoutSymbol.name), labels != LabelSupport::hidden};
    }
    if (isTextVisible && labels == LabelSupport::shownWithoutMargin) {
        shown.label += QLatin1Char(' ');
        shown.labelGuide += QLatin1Char(' ');
    }
    return shown;
}

QString escapedMarkup(const QString& text) {
    QString escaped = text.toHtmlEscaped();
    return escaped.replace(QLatin1Char('\n'), QLatin1StringView("<br/>"));
}

LabelSupport labelSupport(const QString& process, const QStringList& desktops) {
    if (!process.isEmpty()) {
        const auto* const host = std::ranges::find(labelProcesses, process, &LabelHost::name);
        return host == labelProcesses.end() ? LabelSupport::hidden : host->support;
    }
    const auto* const desktop =
        std::ranges::find_if(labelDesktops, [&](const LabelHost& known) { return desktops.contains(known.name); });
    return desktop == labelDesktops.end() ? LabelSupport::hidden : desktop->support;
}

}  // namespace kestro
