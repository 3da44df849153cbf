#include "shell/linux/strip/strip_window.h"

#include "core/settings/user_settings.h"
#include "shell/linux/strip/dock_window.h"
#include "shell/linux/strip/strip_item_view.h"
#include "shell/linux/strip/strip_layout.h"
#include "ui/paint/surface_paint.h"
#include "ui/theme/kestro_theme.h"
#include "ui/theme/window_compositing.h"
#include "ui/theme/window_shape.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace kestro {

StripWindow::StripWindow(std::function<void()> onFrameChange)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint),
      onFrameChange_(std::move(onFrameChange)) {
    setWindowTitle(QStringLiteral("Kestro"));
    setAccessibleName(QStringLiteral("Kestro"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    // A dock without a strut: above the windows, on every workspace, in no task list, and reserving no space.
    makeDock(*this);
    palette_ = KestroTheme::settings().themePalette.subscribe([this](const auto&) { update(); });
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &StripWindow::followPrimaryScreen);
    followPrimaryScreen();
}

StripWindow::~StripWindow() = default;

void StripWindow::add(StripItemView& item) {
    items_.push_back(&item);
    item.show();
    arrange();
}

void StripWindow::remove(StripItemView& item) {
    std::erase(items_, &item);
    arrange();
}

void StripWindow::arrange() {
    layOut();
    if (std::exchange(reportedFrame_, occupiedFrame()) != occupiedFrame()) {
        onFrameChange_();
    }
}

void StripWindow::layOut() {
    if (items_.empty() || screen_ == nullptr) {
        hide();
        return;
    }
    std::vector<int> widths;
    for (const StripItemView* item : items_) {
        widths.push_back(item->wantedWidth());
    }
    const std::vector<QRect> frames = strip_layout::itemFrames(widths);
    for (std::size_t index = 0; index < frames.size(); ++index) {
        items_[index]->setGeometry(frames[index]);
    }
    separators_ = strip_layout::separators(frames);

    const QSize size = strip_layout::stripSize(widths);
    setGeometry(QRect(strip_layout::stripPosition(size, available_), size));
    if (isVisible()) {
        shapeWindow(*this, strip_layout::cornerRadius, isComposited_);
    }
    update();
    show();
}

void StripWindow::nameAfterItems() {
    const QString readout = items_.empty() ? QString() : items_.front()->content().toolTip;
    setWindowTitle(readout.isEmpty() ? QStringLiteral("Kestro") : readout);
}

void StripWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    isComposited_ = window_compositing::isAvailable();
    shapeWindow(*this, strip_layout::cornerRadius, isComposited_);
}

void StripWindow::followPrimaryScreen() {
    if (screen_ != nullptr) {
        screen_->disconnect(this);
    }
    screen_ = QGuiApplication::primaryScreen();
    if (screen_ != nullptr) {
        connect(screen_, &QScreen::geometryChanged, this, &StripWindow::measureScreen);
        connect(screen_, &QScreen::availableGeometryChanged, this, &StripWindow::measureScreen);
    }
    measureScreen();
}

void StripWindow::measureScreen() {
    if (screen_ != nullptr) {
        available_ = PanelSpace().freeArea(*screen_);
    }
    arrange();
}

void StripWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPopupGlass(painter, rect(), strip_layout::cornerRadius);
    constexpr int top = (strip_layout::height - strip_layout::separatorHeight) / 2;
    for (const int left : separators_) {
        paintVerticalHairline(painter, left, top, top + strip_layout::separatorHeight);
    }
}

}  // namespace kestro
