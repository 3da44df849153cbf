#include "shell/linux/desktop_status_bar.h"

#include <algorithm>
#include <utility>

namespace kestro {

/// What an item's owner holds: it stays valid while the real item behind it moves between hosts.
class DesktopStatusBar::Item : public StatusItem {
public:
    Item(DesktopStatusBar& bar, QString identifier, StatusItemHandlers handlers)
        : bar_(bar), identifier_(std::move(identifier)), handlers_(std::move(handlers)) {
        bar_.items_.push_back(this);
        moveTo(bar_.place());
    }

    ~Item() override { std::erase(bar_.items_, this); }

    void moveTo(StatusBar& place) {
        real_.reset();
        real_ = place.createItem(identifier_, handlers_);
        if (content_) {
            real_->setContent(*content_);
        }
    }

    void setContent(const StatusContent& content) override {
        content_ = content;
        real_->setContent(content);
    }

    void openMenu(std::optional<QPoint> position) override { real_->openMenu(position); }

    QRect geometry() const override { return real_->geometry(); }

private:
    DesktopStatusBar& bar_;
    QString identifier_;
    StatusItemHandlers handlers_;
    std::optional<StatusContent> content_;
    std::unique_ptr<StatusItem> real_;
};

DesktopStatusBar::DesktopStatusBar(NotifierEnvironment environment, std::chrono::milliseconds grace)
    : monitor_(std::move(environment)), scheme_(monitor_), panels_(monitor_, scheme_) {
    grace_.setSingleShot(true);
    grace_.setInterval(grace);
    connect(&grace_, &QTimer::timeout, this, [this] { move(true); });
    connect(&monitor_, &HostMonitor::stateChanged, this, &DesktopStatusBar::followHost);
    isOnStrip_ = !monitor_.connection().isConnected();
    if (!isOnStrip_) {
        followHost();
    }
}

DesktopStatusBar::~DesktopStatusBar() = default;

std::unique_ptr<StatusItem> DesktopStatusBar::createItem(const QString& identifier, StatusItemHandlers handlers) {
    return std::make_unique<Item>(*this, identifier, std::move(handlers));
}

void DesktopStatusBar::followHost() {
    if (monitor_.state() == HostMonitor::State::present) {
        grace_.stop();
        move(false);
    } else if (!isOnStrip_ && !grace_.isActive()) {
        grace_.start();
    }
}

void DesktopStatusBar::move(bool toStrip) {
    if (isOnStrip_ == toStrip) {
        return;
    }
    isOnStrip_ = toStrip;
    for (Item* item : items_) {
        item->moveTo(place());
    }
}

StatusBar& DesktopStatusBar::place() {
    if (isOnStrip_) {
        return strip_;
    }
    return panels_;
}

}  // namespace kestro
