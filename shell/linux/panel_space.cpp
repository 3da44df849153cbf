#include "shell/linux/panel_space.h"

#include "shell/linux/x11_display.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <tuple>
#include <utility>

namespace kestro {

namespace {

using namespace std::chrono_literals;
using x11_display::Reply;
using x11_display::root;

/// More windows than a desktop has.
constexpr std::uint32_t mostNumbers = 1024;

/// A window manager may announce the space of a panel before it lists the panel's window.
constexpr auto settlingTime = 100ms;

/// A stretch of pixels without its end, which panels may shorten down to `least`.
struct Stretch {
    std::int64_t start;
    std::int64_t end;
    std::int64_t least;

    std::int64_t length() const { return end - start; }
    bool overlaps(std::int64_t first, std::int64_t last) const { return first < end && last >= start; }
    void startAt(std::int64_t pixel) { start = pixel > start && end - pixel >= least ? pixel : start; }
    void endAt(std::int64_t pixel) { end = pixel < end && pixel - start >= least ? pixel : end; }
};

xcb_get_property_cookie_t request(xcb_connection_t* x11, xcb_window_t window, const std::string& property,
                                  xcb_atom_t type, std::uint32_t mostValues) {
    const xcb_atom_t name = x11_display::atom(x11, property);
    return xcb_get_property(x11, 0, window, name, type, 0, mostValues);
}

/// The 32-bit values of a property; none if it does not exist or has another type.
std::vector<std::uint32_t> values(xcb_connection_t* x11, xcb_get_property_cookie_t cookie) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x11, cookie, nullptr));
    constexpr std::uint8_t bits = 32;
    if (!reply || reply->format != bits) {
        return {};
    }
    const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(std::uint32_t))};
}

std::vector<PanelStrut> readStruts(xcb_connection_t* x11, const std::vector<std::uint32_t>& windows) {
    std::vector<xcb_get_property_cookie_t> cookies;
    for (const std::uint32_t window : windows) {
        cookies.push_back(
            request(x11, window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, std::tuple_size_v<PanelStrut>));
    }
    std::vector<PanelStrut> struts;
    for (const xcb_get_property_cookie_t cookie : cookies) {
        const std::vector<std::uint32_t> found = values(x11, cookie);
        if (found.size() == std::tuple_size_v<PanelStrut>) {
            std::ranges::copy(found, struts.emplace_back().begin());
        }
    }
    return struts;
}

std::vector<QRect> rects(const std::vector<std::uint32_t>& numbers) {
    std::vector<QRect> found;
    for (std::size_t first = 0; first + 4 <= numbers.size(); first += 4) {
        found.emplace_back(static_cast<int>(numbers[first]), static_cast<int>(numbers[first + 1]),
                           static_cast<int>(numbers[first + 2]), static_cast<int>(numbers[first + 3]));
    }
    return found;
}

/// In device pixels. The origin of a screen is the same in points.
QRect deviceFrame(const QScreen& screen) {
    const QRect points = screen.geometry();
    return {points.topLeft(), QSize(qRound(points.width() * screen.devicePixelRatio()),
                                    qRound(points.height() * screen.devicePixelRatio()))};
}

/// The points that lie wholly in an area of device pixels on that screen.
QRect wholePoints(const QRect& area, const QScreen& screen) {
    const QRect whole = deviceFrame(screen);
    const double scale = screen.devicePixelRatio();
    const QMargins cut(static_cast<int>(std::ceil((area.left() - whole.left()) / scale)),
                       static_cast<int>(std::ceil((area.top() - whole.top()) / scale)),
                       static_cast<int>(std::ceil((whole.right() - area.right()) / scale)),
                       static_cast<int>(std::ceil((whole.bottom() - area.bottom()) / scale)));
    return screen.geometry().marginsRemoved(cut);
}

}  // namespace

QRect clearOfStruts(const QRect& screen, QSize desktop, const std::vector<PanelStrut>& struts) {
    Stretch columns{screen.left(), screen.left() + screen.width(), screen.width() / 2};
    Stretch rows{screen.top(), screen.top() + screen.height(), screen.height() / 2};
    const Stretch allColumns = columns;
    const Stretch allRows = rows;
    for (const PanelStrut& strut : struts) {
        const auto& [left, right, top, bottom, leftFirst, leftLast, rightFirst, rightLast, topFirst, topLast,
                     bottomFirst, bottomLast] = strut;
        if (allRows.overlaps(leftFirst, leftLast)) {
            columns.startAt(left);
        }
        if (allRows.overlaps(rightFirst, rightLast)) {
            columns.endAt(desktop.width() - std::int64_t{right});
        }
        if (allColumns.overlaps(topFirst, topLast)) {
            rows.startAt(top);
        }
        if (allColumns.overlaps(bottomFirst, bottomLast)) {
            rows.endAt(desktop.height() - std::int64_t{bottom});
        }
    }
    return {QPoint(static_cast<int>(columns.start), static_cast<int>(rows.start)),
            QSize(static_cast<int>(columns.length()), static_cast<int>(rows.length()))};
}

std::optional<QRect> largestPart(const QRect& screen, const std::vector<QRect>& areas) {
    std::optional<QRect> largest;
    for (const QRect& area : areas) {
        const QRect part = area & screen;
        const bool isPlausible = 2 * part.width() >= screen.width() && 2 * part.height() >= screen.height();
        if (isPlausible && (!largest || part.width() * part.height() > largest->width() * largest->height())) {
            largest = part;
        }
    }
    return largest;
}

PanelSpace::PanelSpace() {
    xcb_connection_t* const x11 = x11_display::connection();
    if (x11 == nullptr) {
        return;
    }
    const bool isOneScreen = QGuiApplication::screens().size() == 1;
    const auto desktop = xcb_get_geometry(x11, root(x11));
    const auto areas = request(x11, root(x11), isOneScreen ? "_NET_WORKAREA" : "_GTK_WORKAREAS_D0",
                               XCB_ATOM_CARDINAL, mostNumbers);
    const auto windows = request(x11, root(x11), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, mostNumbers);
    const Reply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(x11, desktop, nullptr));
    workAreas_ = rects(values(x11, areas));
    if (isOneScreen && !workAreas_.empty()) {
        workAreas_.resize(1);  // the others are those of further workspaces
    }
    struts_ = readStruts(x11, values(x11, windows));
    if (size) {
        desktop_ = {size->width, size->height};
    }
}

QRect PanelSpace::freeArea(const QScreen& screen) const {
    if (desktop_.isNull()) {
        return screen.availableGeometry();
    }
    const QRect whole = deviceFrame(screen);
    const std::optional<QRect> published = largestPart(whole, workAreas_);
    return wholePoints(published ? *published : clearOfStruts(whole, desktop_, struts_), screen);
}

PanelSpaceMonitor::PanelSpaceMonitor(std::function<void()> onChange) {
    report_.setSingleShot(true);
    report_.setInterval(settlingTime);
    QObject::connect(&report_, &QTimer::timeout, std::move(onChange));
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &report_, [this] { report_.start(); });
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &report_, [this] { report_.start(); });
    if (xcb_connection_t* const x11 = x11_display::connection()) {
        workArea_ = x11_display::atom(x11, "_NET_WORKAREA");
        qGuiApp->installNativeEventFilter(this);
    }
}

bool PanelSpaceMonitor::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
        reinterpret_cast<const xcb_property_notify_event_t&>(event).atom == workArea_) {
        report_.start();
    }
    return false;
}

}  // namespace kestro
