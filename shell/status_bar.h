#pragma once

#include "ui/menus/menu_entry.h"

#include <QPoint>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace kestro {

/// A symbol before an item's title: its name in the symbol set, the spoken description, and its size in
/// points.
struct StatusSymbol {
    QString name;
    QString accessibilityDescription;
    int pointSize = 12;

    friend bool operator==(const StatusSymbol&, const StatusSymbol&) = default;
};

/// The colour role of a title; the host picks the colour for the panel's scheme.
enum class StatusTitleColor { label, secondaryLabel, orange };

/// A title with its font: size in points, weight (500 medium … 700 bold) and colour role. Figures are tabular.
struct StatusTitle {
    QString text;
    int pointSize = 12;
    int weight = 500;
    StatusTitleColor color = StatusTitleColor::label;

    friend bool operator==(const StatusTitle&, const StatusTitle&) = default;
};

/// The two rows that an icon-sized item can paint when its host shows no text, in percent; absent: no data.
struct StatusGlance {
    std::optional<int> upperPercent;  ///< memory
    std::optional<int> lowerPercent;  ///< processor

    friend bool operator==(const StatusGlance&, const StatusGlance&) = default;
};

/// Everything that an item shows.
struct StatusContent {
    std::optional<StatusSymbol> symbol;
    StatusTitle title;

    /// The widest text that the title can have, so that a panel can reserve the space.
    QString widestTitle;

    /// The whole readout for hosts that show no title; empty: the title itself.
    QString toolTip;

    /// What a screen reader says after the item's name, also where no text is shown; empty: the title itself.
    QString spokenText;

    /// The title or its replacement and the help, as a screen reader says them.
    QString spoken() const {
        QString text = spokenText.isEmpty() ? title.text.trimmed() : spokenText;
        if (!text.isEmpty() && !help.isEmpty()) {
            text += QLatin1String(", ");
        }
        return text + help;
    }

    /// A sentence about the item's state, shown in the tooltip and spoken wherever the title is shown; may be
    /// empty.
    QString help;

    /// Values to paint into the icon where the host shows no title; absent: keeps the symbol.
    std::optional<StatusGlance> glance;

    friend bool operator==(const StatusContent&, const StatusContent&) = default;
};

/// How an item was clicked.
enum class StatusClick { primary, secondary };

/// Events of an item. `anchor` is the item's area on the screen, or the panel edge nearest to the click, in
/// global coordinates; null when the host does not report it.
struct StatusItemHandlers {
    /// A click, with `controlHeld` for the control key. If empty, any click opens the menu.
    std::function<void(StatusClick click, bool controlHeld, const QRect& anchor)> onClick;

    /// Builds the menu each time it opens.
    std::function<Menu()> buildMenu;
};

/// One item in the status bar; destroying it removes it. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Shows new content; equal content costs nothing.
    virtual void setContent(const StatusContent& content) = 0;

    /// Opens the item's menu beside the item, or at `position` (global coordinates) when given.
    virtual void openMenu(std::optional<QPoint> position = std::nullopt) = 0;

    /// The item's area in global coordinates; null when the host does not report it.
    virtual QRect geometry() const = 0;
};

/// Creates status items. Main thread; outlives its items.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// `identifier` is a stable plain word for this item, such as "kestro-main".
    [[nodiscard]] virtual std::unique_ptr<StatusItem> createItem(const QString& identifier,
                                                                 StatusItemHandlers handlers) = 0;

    /// The area that the items cover above all windows, in global coordinates; null while a panel hosts them.
    virtual QRect overlay() const { return {}; }

    /// Calls `onChange` after each change of the overlay, also while items are created or destroyed; replaces the
    /// previous callback. An empty one ends the calls.
    virtual void onOverlayChanged(std::function<void()> /*onChange*/) {}
};

}  // namespace kestro
