#pragma once

#include "shell/status_bar.h"

#include <functional>
#include <memory>
#include <utility>

namespace kestro {

class StripWindow;

/// A status bar of our own, for desktops without a host. Its window exists while it has items. Main thread;
/// outlives its items.
class StripStatusBar : public StatusBar {
public:
    StripStatusBar();
    ~StripStatusBar() override;

    [[nodiscard]] std::unique_ptr<StatusItem> createItem(const QString& identifier,
                                                         StatusItemHandlers handlers) override;
    QRect overlay() const override;
    void onOverlayChanged(std::function<void()> onChange) override { onOverlayChanged_ = std::move(onChange); }

private:
    std::function<void()> onOverlayChanged_;
    std::weak_ptr<StripWindow> window_;
};

}  // namespace kestro
