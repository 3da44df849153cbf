#pragma once

#include "shell/macos/native_status_item.h"
#include "shell/status_bar.h"

#include <utility>

namespace kestro {

/// The items in the menu bar. Main thread; outlives its items.
class MacStatusBar final : public StatusBar {
public:
    explicit MacStatusBar(NativeStatusItemFactory makeItem = makeNativeStatusItem)
        : makeItem_(std::move(makeItem)) {}

    [[nodiscard]] std::unique_ptr<StatusItem> createItem(const QString& identifier,
                                                         StatusItemHandlers handlers) override;

private:
    const NativeStatusItemFactory makeItem_;
};

}  // namespace kestro
