#include "shell/linux/desktop_status_bar.h"

#include "shell/readout_service.h"

#include <algorithm>
#include <utility>

namespace kestro {

/// What an item's owner holds: it stays valid while the real item behind it moves between hosts.
class DesktopStatusBar::Item : public StatusItem {
public:
    Item(DesktopStatusBar& bar, QString identifier, StatusItemHandlers handlers)
        : bar_(bar), identifier_(std::move(identifier)), handlers_(std::move(handlers)) {
        bar_.items_.push_back(this);
        moveTo(bar_.place(identifier_));
    }

    ~Item() override { std::erase(bar_.items_, this); }

    const QString& identifier() const { return identifier_; }

    /// Null: nowhere.
    void moveTo(StatusBar* place) {
        if (place_ == place) {
            return;
        }
        place_ = place;
        real_.reset();
        if (place_ == nullptr) {
            return;
        }
        real_ = place_->createItem(identifier_, handlers_);
        if (content_) {
            real_->setContent(*content_);
        }
    }

    void setContent(const StatusContent& content) override {
        content_ = content;
        if (real_) {
            real_->setContent(content);
        }
    }

    void openMenu(std::optional<QPoint> position) override {
        if (real_) {
            real_->openMenu(position);
        }
    }

    QRect geometry() const override { return real_ ? real_->geometry() : QRect(); }

private:
    DesktopStatusBar& bar_;
    QString identifier_;
    StatusItemHandlers handlers_;
    std::optional<StatusContent> content_;
    StatusBar* place_ = nullptr;
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
    placeItems();
}

void DesktopStatusBar::setReadoutHosted(bool isHosted) {
    isReadoutHosted_ = isHosted;
    placeItems();
}

void DesktopStatusBar::placeItems() {
    for (Item* item : items_) {
        item->moveTo(place(item->identifier()));
    }
}

StatusBar* DesktopStatusBar::place(const QString& identifier) {
    if (isReadoutHosted_ && (isOnStrip_ || identifier == readoutItemIdentifier)) {
        return nullptr;
    }
    return isOnStrip_ ? static_cast<StatusBar*>(&strip_) : &panels_;
}

}  // namespace kestro
