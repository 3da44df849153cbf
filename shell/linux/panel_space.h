#pragma once

#include <QAbstractNativeEventFilter>
#include <QRect>
#include <QSize>
#include <QTimer>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

class QScreen;

namespace kestro {

/// What a panel reserves at the edges of the whole X screen, in device pixels: left, right, top and bottom, each
/// with the first and the last pixel of its range in the same order (_NET_WM_STRUT_PARTIAL, Extended Window
/// Manager Hints 1.5).
using PanelStrut = std::array<std::uint32_t, 12>;

/// The part of `screen` that panels leave free, both on an X screen of size `desktop`, in device pixels. Ignores
/// what would take more than half of the screen's width or height, such as a panel between two screens.
QRect clearOfStruts(const QRect& screen, QSize desktop, const std::vector<PanelStrut>& struts);

/// The largest part of `screen` that one of the areas covers; absent if none covers half of its width and height.
std::optional<QRect> largestPart(const QRect& screen, const std::vector<QRect>& areas);

/// The space that panels leave free, as it is at construction. On X11 it is read from the server, since the
/// toolkit ignores it with several screens and may be late with one: the areas that window managers publish, which
/// include panels that are no windows, else what the windows reserve. This takes two round trips, so construct it
/// only to place something. Main thread.
class PanelSpace {
public:
    PanelSpace();

    /// The area of a screen that panels leave free, in points and global coordinates.
    QRect freeArea(const QScreen& screen) const;

private:
    QSize desktop_;  ///< in device pixels; null: the toolkit knows the areas
    std::vector<QRect> workAreas_;
    std::vector<PanelStrut> struts_;
};

/// Reports shortly after panels may have changed the space that they leave free. Needed with several screens on
/// X11, where the toolkit does not report it. Main thread.
class PanelSpaceMonitor : public QAbstractNativeEventFilter {
public:
    explicit PanelSpaceMonitor(std::function<void()> onChange);

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

private:
    std::uint32_t workArea_ = 0;  ///< the atom of the property that window managers set then
    QTimer report_;
};

}  // namespace kestro
