#pragma once

#include "ui/theme/window_compositing.h"

namespace kestro {

/// Blending and blurring on X11: windows are blended while a compositing manager owns the selection _NET_WM_CM_Sn,
/// and blurred by a window manager that knows the property _KDE_NET_WM_BLUR_BEHIND_REGION. Elsewhere windows are
/// always blended and never blurred. Windows are cut by the server's shape extension. Main thread.
class X11Compositing final : public WindowCompositing {
public:
    bool isAvailable() const override;
    bool canBlurBehind() const override;
    bool canChange() const override;
    void requestBlurBehind(QWindow& window, const QRegion& region) const override;
    bool cutTo(QWindow& window, const QRegion& region) const override;
};

}  // namespace kestro
