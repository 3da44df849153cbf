#pragma once

#include <QString>
#include <QStringList>
#include <variant>

#include "app/status_bar/status_bar.h"

namespace kestro {

/// What a host does with the text of an item.
enum class LabelSupport {
    hidden,              ///< nothing, or it is not known to do anything
    shown,               ///< it stands beside the icon
    shownWithoutMargin,  ///< it stands beside the icon and touches the next item
};

/// A symbol as an icon. Among labels it is smaller, as tall as the text of its own or of the items beside it.
struct NotifierSymbol {
    QString name;
    bool isAmongLabels = false;

    friend bool operator==(const NotifierSymbol&, const NotifierSymbol&) = default;
};

/// What an icon shows: nothing, a symbol, or values.
using NotifierIcon = std::variant<std::monostate, NotifierSymbol, StatusGlance>;

/// What an item tells a host of org.kde.StatusNotifierItem, as plain text (not yet escaped).
struct NotifierPresentation {
    QString title;       ///< the item's name
    QString label;       ///< the text beside the icon
    QString labelGuide;  ///< the widest label
    QString toolTipTitle;
    QString toolTipText;
    QString accessibleDescription;  ///< name and figures; hosts ask for it, its changes are not announced
    NotifierIcon icon;

    friend bool operator==(const NotifierPresentation&, const NotifierPresentation&) = default;
};

/// Where the host shows no labels, values replace the symbol; without a text they would stand for, they do not.
/// Wherever no text is visible, the tooltip carries the whole readout and there is always an icon.
NotifierPresentation notifierPresentation(const StatusContent& content, LabelSupport labels);

/// Plain text for a place that is read as markup.
QString escapedMarkup(const QString& text);

/// What the host does with labels. `process` is the name of the process that owns the watcher, as the kernel cuts
/// it (15 characters), or empty when it cannot be read; `desktops` are the entries of XDG_CURRENT_DESKTOP, which
/// decide only then. Labels count as hidden wherever they are not known to be shown.
LabelSupport labelSupport(const QString& process, const QStringList& desktops);

}  // namespace kestro
