#pragma once

#include <QRegion>
#include <optional>

class QWindow;

namespace kestro {

/// The window system's support for translucent windows. Main thread.
namespace window_compositing {

/// Whether windows are blended with what is behind them: always outside X11; on X11 while a compositing manager
/// runs (it owns the selection _NET_WM_CM_Sn). Queries the server at each call.
bool isAvailable();

/// Whether a window manager can blur what is behind a window. Queries the server until one can.
bool canBlurBehind();

/// Whether these answers can change while the application runs: on X11 only.
bool canChange();

/// Overrides isAvailable(), for pictures and tests; nullopt restores it.
void setOverride(std::optional<bool> available);

/// Asks the window manager to blur what is behind `region` of the window, in points, through the property
/// _KDE_NET_WM_BLUR_BEHIND_REGION; an empty region withdraws it. No-op if blur is not available.
void requestBlurBehind(QWindow& window, const QRegion& region);

}  // namespace window_compositing

}  // namespace kestro
