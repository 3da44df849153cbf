#pragma once

#include "shell/status_bar.h"

#include <QString>
#include <QStringList>

#include <variant>

namespace kestro {

/// What a host does with the text of an item.
enum class LabelSupport {
    hidden,              ///< ignores it, or its behaviour is unknown
    shown,               ///< shows it beside the icon
    shownWithoutMargin,  ///< shows it beside the icon, touching the next item
};

/// A symbol as an icon. Among labels it is smaller: as tall as its own text or that of its neighbours.
struct NotifierSymbol {
    QString name;
    bool isAmongLabels = false;

    friend bool operator==(const NotifierSymbol&, const NotifierSymbol&) = default;
};

/// What an icon shows: nothing, a symbol, or values.
using NotifierIcon = std::variant<std::monostate, NotifierSymbol, StatusGlance>;

/// What an item presents to a host of org.kde.StatusNotifierItem, as plain text (not yet escaped).
struct NotifierPresentation {
    QString title;       ///< the item's name
    QString label;       ///< the text beside the icon
    QString labelGuide;  ///< the widest label
    QString toolTipTitle;
    QString toolTipText;
    QString accessibleDescription;  ///< name and figures; hosts query it, changes are not announced
    NotifierIcon icon;

    friend bool operator==(const NotifierPresentation&, const NotifierPresentation&) = default;
};

/// Where the host shows no labels, values replace the symbol, unless there is no text for them to replace. Where
/// no text is visible, the tooltip carries the whole readout and there is always an icon.
NotifierPresentation notifierPresentation(const StatusContent& content, LabelSupport labels);

/// Escapes plain text for a field that is parsed as markup.
QString escapedMarkup(const QString& text);

/// What the host does with labels. `process` is the name of the process that owns the watcher, as the kernel
/// truncates it (15 characters), or empty when it cannot be read; only then do `desktops`, the entries of
/// XDG_CURRENT_DESKTOP, decide. Labels count as hidden unless they are known to be shown.
LabelSupport labelSupport(const QString& process, const QStringList& desktops);

}  // namespace kestro
