#pragma once

#include <QRegion>
#include <optional>

class QWindow;

namespace kestro {

/// What the window system can do with translucent windows. Main thread.
namespace window_compositing {

/// Whether windows are blended with what lies behind them: always outside X11, and there while a compositing
/// manager runs (it owns the selection _NET_WM_CM_Sn). Asks the server at each call.
bool isAvailable();

/// Whether a window manager can blur what lies behind a window. Asks the server until there is one.
bool canBlurBehind();

/// Whether these answers can become others while the application runs: on X11 only.
bool canChange();

/// Takes the answer of isAvailable() as given, for pictures and tests; nullopt asks again.
void setOverride(std::optional<bool> available);

/// Asks the window manager to blur what lies behind `region` of the window, in points, by the property
/// _KDE_NET_WM_BLUR_BEHIND_REGION; an empty region withdraws it. Does nothing where nobody can blur.
void requestBlurBehind(QWindow& window, const QRegion& region);

}  // namespace window_compositing

}  // namespace kestro
