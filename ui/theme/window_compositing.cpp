#include "ui/theme/window_compositing.h"

namespace kestro::window_compositing {

namespace {

const WindowCompositing* installed = nullptr;
std::optional<bool> overridden;

}  // namespace

void install(const WindowCompositing& provider) {
    installed = &provider;
}

bool isAvailable() {
    return overridden ? *overridden : installed == nullptr || installed->isAvailable();
}

bool canBlurBehind() {
    return installed != nullptr && installed->canBlurBehind();
}

bool canChange() {
    return overridden || (installed != nullptr && installed->canChange());
}

void requestBlurBehind(QWindow& window, const QRegion& region) {
    if (installed != nullptr) {
        installed->requestBlurBehind(window, region);
    }
}

bool cutTo(QWindow& window, const QRegion& region) {
    return installed != nullptr && installed->cutTo(window, region);
}

void setOverride(std::optional<bool> available) {
    overridden = available;
}

}  // namespace kestro::window_compositing
