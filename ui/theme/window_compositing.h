#pragma once

#include <QRegion>

#include <optional>

class QWindow;

namespace kestro {

/// What a window system can do with translucent windows. Main thread.
class WindowCompositing {
public:
    virtual ~WindowCompositing() = default;

    /// Whether windows are blended with what is behind them. Asks the window system at each call.
    virtual bool isAvailable() const = 0;

    /// Whether what is behind a window can be blurred. Asks the window system until it can.
    virtual bool canBlurBehind() const = 0;

    /// Whether these answers can change while the application runs.
    virtual bool canChange() const = 0;

    /// Requests a blur of what is behind `region` of the window, in device pixels; an empty region withdraws the
    /// request. Does nothing where that is not possible.
    virtual void requestBlurBehind(QWindow& window, const QRegion& region) const = 0;

    /// Cuts a window to `region`, in device pixels, which Qt does only in points; an empty region makes it a
    /// rectangle again. False: not possible.
    virtual bool cutTo(QWindow& window, const QRegion& region) const = 0;
};

/// The answers of the window system that is in use. Main thread.
namespace window_compositing {

/// Takes the answers from `provider`, which outlives every window; without one, windows are blended and not
/// blurred.
void install(const WindowCompositing& provider);

bool isAvailable();
bool canBlurBehind();
bool canChange();
void requestBlurBehind(QWindow& window, const QRegion& region);
bool cutTo(QWindow& window, const QRegion& region);

/// Fixes the answer of isAvailable() for pictures and tests; nullopt removes the override.
void setOverride(std::optional<bool> available);

}  // namespace window_compositing

}  // namespace kestro
