#pragma once

#include "core/model/settings_enumerations.h"
#include "core/model/system_power_mode.h"
#include "core/readout/readout_figures.h"
#include "ui/menus/menu_entry.h"

#include <QRect>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace kestro {

/// The identifier of the status item that shows the readout.
inline const QString readoutItemIdentifier = QStringLiteral("kestro-main");

/// The readout for a program that shows it in its own way.
struct SharedReadout {
    QString text;        ///< without the symbol; empty if the user wants only the symbol
    QString widestText;  ///< the widest text possible, so that a panel can reserve the room
    QString toolTip;
    bool hasSymbol = false;
    bool isKeepAwakeActive = false;
    std::optional<std::int64_t> keepAwakeRemainingSeconds;  ///< absent while inactive or without an end
    SystemPowerMode powerMode = SystemPowerMode::balanced;

    friend bool operator==(const SharedReadout&, const SharedReadout&) = default;
};

/// What the application answers and does for other programs. Everything is called on the main thread, from the
/// event loop.
struct ReadoutHandlers {
    std::function<SharedReadout()> readout;
    std::function<ReadoutFigures()> figures;

    /// `anchor` is the place of the click in global coordinates; null: unknown.
    std::function<void(const QRect& anchor)> togglePopover;
    std::function<void()> showDashboard;

    /// Without a tab: the one last selected.
    std::function<void(std::optional<SettingsTab> tab)> showSettings;
    std::function<void()> toggleKeepAwake;

    /// Builds the menu of the readout each time it opens.
    std::function<Menu()> buildMenu;
};

/// Offers the readout to other programs of the session. Main thread; outlives the application's root object.
class ReadoutService {
public:
    virtual ~ReadoutService() = default;

    /// Starts to serve. The handlers are called until `withdraw`.
    virtual void publish(ReadoutHandlers handlers) = 0;
    virtual void withdraw() = 0;

    /// Whatever the handlers return may have changed. Costs nothing while no program follows the readout.
    virtual void readoutDidUpdate() = 0;
};

}  // namespace kestro
