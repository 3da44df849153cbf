#pragma once

#include "core/readout/readout_figures.h"
#include "shell/readout_service.h"
#include "ui/kestro_services.h"

#include <QRect>

#include <functional>
#include <optional>

namespace kestro {

class MainStatusItem;

/// What other programs may ask of the application through the readout.
struct ReadoutActions {
    std::function<void(const QRect& anchor)> togglePopover;
    std::function<void()> showDashboard;
    std::function<void(std::optional<SettingsTab> tab)> showSettings;
    std::function<Menu()> buildMenu;
};

/// Offers the readout of the main item to other programs as long as it lives. Main thread.
class ReadoutPublication {
public:
    /// All references outlive this object.
    ReadoutPublication(ReadoutService& service, const KestroServices& services, MainStatusItem& item,
                       ReadoutActions actions);
    ~ReadoutPublication();
    ReadoutPublication(const ReadoutPublication&) = delete;
    ReadoutPublication& operator=(const ReadoutPublication&) = delete;

private:
    SharedReadout readout() const;
    ReadoutFigures figures() const;

    ReadoutService& service_;
    const KestroServices services_;
    MainStatusItem& item_;
};

}  // namespace kestro
