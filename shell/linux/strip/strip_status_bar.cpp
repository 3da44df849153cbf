#include "shell/linux/strip/strip_status_bar.h"

#include "shell/linux/status_menu_popup.h"
#include "shell/linux/strip/strip_item_view.h"
#include "shell/linux/strip/strip_window.h"

#include <utility>

namespace kestro {

namespace {

/// An item on the strip. Clicks run from the event loop, since their handler may destroy the item.
class StripStatusItem : public StatusItem {
public:
    StripStatusItem(const QString& identifier, StatusItemHandlers handlers, std::shared_ptr<StripWindow> window)
        : handlers_(std::move(handlers)), window_(std::move(window)) {
        view_ = new StripItemView([this](StatusClick click, bool controlHeld) { clicked(click, controlHeld); },
                                  window_.get());
        view_->setObjectName(identifier);
        window_->add(*view_);
    }

    ~StripStatusItem() override {
        window_->remove(*view_);
        delete view_;
    }

    void setContent(const StatusContent& content) override {
        if (content == view_->content()) {
            return;
        }
        if (view_->setContent(content)) {
            window_->arrange();
        }
        window_->nameAfterItems();
    }

    void openMenu(std::optional<QPoint> position) override {
        constexpr int gap = 6;
        const QPoint below = geometry().bottomLeft() + QPoint(0, gap);
        popup_.open(handlers_.buildMenu ? handlers_.buildMenu() : Menu(), position.value_or(below));
    }

    QRect geometry() const override { return {view_->mapToGlobal(QPoint()), view_->size()}; }

private:
    void clicked(StatusClick click, bool controlHeld) {
        QMetaObject::invokeMethod(
            view_,
            [this, click, controlHeld] {
                if (!handlers_.onClick) {
                    openMenu(std::nullopt);
                    return;
                }
                const auto onClick = handlers_.onClick;
                onClick(click, controlHeld, geometry());
            },
            Qt::QueuedConnection);
    }

    StatusItemHandlers handlers_;
    std::shared_ptr<StripWindow> window_;
    StripItemView* view_ = nullptr;
    StatusMenuPopup popup_;
};

}  // namespace

StripStatusBar::StripStatusBar() = default;
StripStatusBar::~StripStatusBar() = default;

std::unique_ptr<StatusItem> StripStatusBar::createItem(const QString& identifier, StatusItemHandlers handlers) {
    std::shared_ptr<StripWindow> window = window_.lock();
    if (!window) {
        window = std::make_shared<StripWindow>([this] {
            if (onOverlayChanged_) {
                onOverlayChanged_();
            }
        });
        window_ = window;
    }
    return std::make_unique<StripStatusItem>(identifier, std::move(handlers), std::move(window));
}

QRect StripStatusBar::overlay() const {
    const std::shared_ptr<StripWindow> window = window_.lock();
    return window ? window->occupiedFrame() : QRect();
}

}  // namespace kestro
