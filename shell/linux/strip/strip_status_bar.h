#pragma once

#include "shell/status_bar.h"

#include <memory>

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

private:
    std::weak_ptr<StripWindow> window_;
};

}  // namespace kestro
