#include "shell/macos/mac_status_bar.h"

#include "shell/macos/menu_translation.h"
#include "shell/macos/screen_coordinates.h"
#include "shell/macos/status_item_look.h"

#include <QGuiApplication>
#include <QScreen>

namespace kestro {

namespace {

double primaryHeight() {
    const QScreen* const primary = QGuiApplication::primaryScreen();
    return primary != nullptr ? primary->geometry().height() : 0;
}

class MacStatusItem final : public StatusItem {
public:
    MacStatusItem(const NativeStatusItemFactory& makeItem, const QString& identifier, StatusItemHandlers handlers)
        : handlers_(std::move(handlers)),
          native_(makeItem(identifier.toStdString(), [this](NativeClick click) { clicked(click); })) {}

    void setContent(const StatusContent& content) override {
        const NativeStatusContent native = nativeStatusContent(content);
        if (shown_ != native) {
            native_->show(native);
            shown_ = native;
        }
    }

    /// Returns when the menu has closed. The item may have been removed by then.
    void openMenu(std::optional<QPoint> position) override {
        if (!handlers_.buildMenu) {
            return;
        }
        const NativeMenu menu = nativeMenu(handlers_.buildMenu());
        if (!menu.entries.empty()) {
            native_->popUp(menu, position ? std::optional(screen_coordinates::toNative(*position, primaryHeight()))
                                          : std::nullopt);
        }
    }

    QRect geometry() const override {
        const auto frame = native_->frame();
        return frame ? screen_coordinates::fromNative(*frame, primaryHeight()) : QRect();
    }

private:
    void clicked(NativeClick click) {
        if (!handlers_.onClick) {
            openMenu(std::nullopt);
            return;
        }
        const auto onClick = handlers_.onClick;  // it may remove the item
        onClick(click.isSecondary ? StatusClick::secondary : StatusClick::primary, click.controlHeld, geometry());
    }

    const StatusItemHandlers handlers_;
    const std::unique_ptr<NativeStatusItem> native_;
    std::optional<NativeStatusContent> shown_;
};

}  // namespace

std::unique_ptr<StatusItem> MacStatusBar::createItem(const QString& identifier, StatusItemHandlers handlers) {
    return std::make_unique<MacStatusItem>(makeItem_, identifier, std::move(handlers));
}

}  // namespace kestro
