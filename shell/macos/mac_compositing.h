#pragma once

#include "core/base/subscription.h"
#include "shell/macos/native_visual_effects.h"
#include "ui/theme/window_compositing.h"

#include <QList>
#include <QPointer>
#include <QRegion>
#include <QWindow>

#include <memory>

namespace kestro {

class UserSettings;

/// The glass behind the windows: macOS blends all windows, and blurs through a pane of the material that the user
/// has chosen. Main thread; both references outlive it.
class MacCompositing final : public WindowCompositing {
public:
    MacCompositing(NativeVisualEffects& effects, const UserSettings& settings);
    ~MacCompositing() override;
    MacCompositing(const MacCompositing&) = delete;
    MacCompositing& operator=(const MacCompositing&) = delete;

    bool isAvailable() const override { return true; }
    bool canBlurBehind() const override { return true; }
    bool canChange() const override { return false; }
    void requestBlurBehind(QWindow& window, const QRegion& region) const override;

    /// False: blended windows need no other shape.
    bool cutTo(QWindow&, const QRegion&) const override { return false; }

private:
    class WindowStates;

    struct Glass {
        QPointer<QWindow> window;
        QRegion region;
    };

    void lay(const Glass& glass) const;
    void followMaterial();
    void layAgain(const QObject* window);

    NativeVisualEffects& effects_;
    const UserSettings& settings_;
    const std::unique_ptr<WindowStates> states_;
    mutable QList<Glass> glass_;
    Subscription materialChanges_;
};

}  // namespace kestro
