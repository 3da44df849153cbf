#pragma once

#include <QString>
#include <QStringList>
#include <variant>

#include "app/status_bar/status_bar.h"

namespace kestro {

/// What an icon shows: nothing, the symbol of that name, or values.
using NotifierIcon = std::variant<std::monostate, QString, StatusGlance>;

/// What an item tells a host of org.kde.StatusNotifierItem, as plain text (not yet escaped).
struct NotifierPresentation {
    QString title;       ///< the item's name
    QString label;       ///< the text beside the icon
    QString labelGuide;  ///< the widest label
    QString toolTipTitle;
    QString toolTipText;
    QString accessibleDescription;
    NotifierIcon icon;

    friend bool operator==(const NotifierPresentation&, const NotifierPresentation&) = default;
};

/// Where the host shows no labels, values replace the symbol and the tooltip carries the whole readout. An
/// item without text is treated so on every host. There is always an icon where there is no visible text.
NotifierPresentation notifierPresentation(const StatusContent& content, bool hostShowsLabels);

/// Plain text for a place that is read as markup.
QString escapedMarkup(const QString& text);

/// True when the host is known to show labels. `process` is the name of the process that owns the watcher, as
/// the kernel cuts it (15 characters), or empty when it cannot be read; `desktops` are the entries of
/// XDG_CURRENT_DESKTOP, which decide only then.
bool hostShowsLabels(const QString& process, const QStringList& desktops);

}  // namespace kestro
