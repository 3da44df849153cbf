#pragma once

#include "app/windows/surface_window.h"

namespace kestro {

/// The settings window: of fixed size unless its screen is smaller, centred on the screen when created, moved by
/// its background. Created on the first request and then kept.
class SettingsWindow final : public SurfaceWindow {
public:
    SettingsWindow(WindowDelegate& delegate, WindowSystem& system, ContentFactory makeContent);

    /// Makes the whole window visible on its screen.
    void fitToScreen();

protected:
    void keepSize(QSize points) override;

private:
    void setFrame(const QRect& wanted);
};

}  // namespace kestro
