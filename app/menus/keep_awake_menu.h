#pragma once

#include "core/model/keep_awake_types.h"
#include "shell/status_bar.h"

#include <QString>

#include <optional>

namespace kestro {

/// Actions of the keep-awake item's menu. Main thread.
class KeepAwakeMenuActions {
public:
    virtual ~KeepAwakeMenuActions() = default;

    virtual void toggleAction() = 0;
    virtual void selectDuration(KeepAwakeDuration duration) = 0;
    virtual void selectTarget(KeepAwakeTarget target) = 0;
    virtual void openSettingsAction() = 0;
};

/// What the keep-awake item's menu shows.
struct KeepAwakeMenuState {
    std::optional<KeepAwakeDuration> activeDuration;  ///< absent: keep-awake is off
    QString remainingTime;
    KeepAwakeTarget targetMode = KeepAwakeTarget::displayAndSystem;
};

/// The menu of the keep-awake item. `actions` outlives it.
StatusMenu keepAwakeMenu(const KeepAwakeMenuState& state, KeepAwakeMenuActions& actions);

}  // namespace kestro
