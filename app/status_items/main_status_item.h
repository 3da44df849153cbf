#pragma once

#include "app/base/coalesced_task.h"
#include "app/status_items/main_status_content.h"
#include "core/base/subscription.h"
#include "shell/status_bar.h"
#include "ui/kestro_services.h"

#include <QRect>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kestro {

struct Platform;

/// The application's own item in the status bar. Shows the readout, composed anew once per turn of the main queue
/// in which a value or a setting changed, and keeps the values that it contains measured while only the readout is
/// visible. Main thread.
class MainStatusItem {
public:
    /// All references outlive this object.
    MainStatusItem(const Platform& platform, StatusBar& statusBar, const KestroServices& services,
                   StatusItemHandlers handlers);

    /// Composes the readout from the current values and shows it if it changed.
    void updateText();

    /// Called after every composition, whether or not anything changed.
    void setUpdateHandler(std::function<void()> onUpdate) { onUpdate_ = std::move(onUpdate); }

    const StatusContent& content() const { return content_.content(); }

    void openMenu() { item_->openMenu(); }

    /// The item's area on the screen; null when the host does not report it.
    QRect geometry() const { return item_->geometry(); }

    /// Where to open what a click on the item requests: its area, else the anchor of the last such click unless
    /// the screens have changed since. Null: unknown.
    QRect anchor() const;
    void setLastAnchor(const QRect& anchor) { lastAnchor_ = anchor; }
    void screensDidChange() { lastAnchor_ = {}; }

private:
    void follow();
    void updateReadoutSources();

    const KestroServices services_;
    MainStatusContent content_;
    std::function<void()> onUpdate_;
    std::unique_ptr<StatusItem> item_;
    QRect lastAnchor_;
    CoalescedTask textUpdate_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
