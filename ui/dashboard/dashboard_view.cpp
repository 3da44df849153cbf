#include "ui/dashboard/dashboard_view.h"

#include "core/settings/user_settings.h"
#include "ui/controls/button.h"
#include "ui/controls/symbol_view.h"
#include "ui/controls/text_label.h"
#include "ui/dashboard/activity_section.h"
#include "ui/dashboard/compute_section.h"
#include "ui/dashboard/cooling_section.h"
#include "ui/dashboard/dashboard_width.h"
#include "ui/dashboard/io_section.h"
#include "ui/dashboard/memory_section.h"
#include "ui/decorations/orvanel_watermark.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestro {

namespace {

constexpr double cornerRadius = 12;
constexpr QSize smallestSize{720, 420};
constexpr int idealHeight = 480;
constexpr int controlsTop = 8;
constexpr int controlsHeight = 28;
constexpr int symbolSize = 15;
constexpr int wordmarkGap = 8;
constexpr int buttonGap = 6;
constexpr double dotDiameter = 5;
constexpr int footerGap = 7;

}  // namespace

DashboardView::DashboardView(const KestroServices& services, const DashboardActions& actions, QWidget* parent)
    : GlassSurface(services.settings, cornerRadius, parent),
      services_(services),
      actions_(actions),
      symbol_(new SymbolView(QStringLiteral("gauge.with.needle"), symbolSize, KestroTheme::accentCool, this)),
      wordmark_(new TextLabel(QStringLiteral("KESTRO"), this)),
      buttons_{
          makeHeaderButton(QStringLiteral("gearshape"), 11, QStringLiteral("Settings"), actions.onOpenSettings),
          makeHeaderButton(QStringLiteral("pin.fill"), 11, QString(),
                           [this] { services_.settings.isPinned.set(!services_.settings.isPinned.get()); }),
          makeHeaderButton(QStringLiteral("arrow.up.left.and.arrow.down.right"), 10,
                           QStringLiteral("Toggle Windowed Full Screen"), actions.onToggleFullScreen),
          makeHeaderButton(QStringLiteral("xmark"), 10, QStringLiteral("Close Dashboard"), actions.onClose)},
      sections_{new ComputeSection(services, this), new CoolingSection(services, this),
                new MemorySection(services, this), new IOSection(services, this),
                new ActivitySection(services, this)},
      engineName_(new TextLabel(QStringLiteral("SMC ENGINE"), this)),
      engineDetail_(new TextLabel(QStringLiteral("DIRECT HARDWARE TELEMETRY"), this)),
      nothing_(
          new TextLabel(QStringLiteral("Every section is off. Choose some in Settings, under Dashboard."), this)),
      watermark_(new OrvanelWatermark(OrvanelWatermark::Variant::full, this)),
      refreshed_(new TextLabel(QStringLiteral("Refreshed every 1.0s"), this)) {
    wordmark_->setStyle(text_styles::wordmarkDashboard);
    TextStyle engine = text_styles::caption;
    engine.weight = text_styles::w700;
    engineName_->setStyle(engine);
    engineDetail_->setStyle(text_styles::caption);
    refreshed_->setStyle(text_styles::caption);
    refreshed_->setTextAlignment(Qt::AlignRight);
    nothing_->setStyle(text_styles::settingTitle);
    nothing_->setInk(KestroTheme::textSecondary);
    nothing_->setTextAlignment(Qt::AlignHCenter);
    showPin();
    subscriptions_.push_back(services.settings.isPinned.subscribe([this](bool) { showPin(); }));
    for (const Setting<bool>* section : dashboardSectionSwitches(services.settings)) {
        subscriptions_.push_back(section->subscribe([this](bool) {
            updateGeometry();
            followZoom();
            arrange();
        }));
    }
    arrange();
}

QSize DashboardView::sizeHint() const {
    return {dashboardWidth(visibleDashboardSections(services_.settings)), idealHeight};
}

QSize DashboardView::minimumSizeHint() const {
    return smallestSize;
}

std::optional<PlacedHalftoneField> DashboardView::halftone() const {
    return dashboardHalftone(designRect(*this).size());
}

Button* DashboardView::makeHeaderButton(const QString& symbol, double size, const QString& help,
                                        std::function<void()> action) {
    auto* button = new Button(ButtonKind::chip, this);
    button->setSymbol(symbol, size);
    button->setSquare(controlsHeight);
    button->setHelp(help);
    button->onClick([action = std::move(action)] {
        if (action) {
            action();
        }
    });
    return button;
}

void DashboardView::showPin() {
    const bool isPinned = services_.settings.isPinned.get();
    buttons_[1]->setOn(isPinned);
    buttons_[1]->setHelp(isPinned ? QStringLiteral("Unpin Window") : QStringLiteral("Pin Window on Top"));
}

void DashboardView::paintEvent(QPaintEvent* event) {
    GlassSurface::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintInDesignPoints(painter, *this);
    const QSizeF size = designRect(*this).size();
    paintHairline(painter, 0, size.width(), dashboardHeaderHeight);
    const double footer = size.height() - dashboardFooterHeight;
    paintHairline(painter, 0, size.width(), footer);
    const double inset = metrics().inset;
    const QRectF dot(inset, footer + (dashboardFooterHeight - dotDiameter) / 2, dotDiameter, dotDiameter);
    paintRounded(painter, dot, dotDiameter / 2, KestroTheme::accentNominal());
}

void DashboardView::resizeEvent(QResizeEvent* event) {
    followZoom();
    GlassSurface::resizeEvent(event);
    arrange();
}

void DashboardView::showEvent(QShowEvent* event) {
    GlassSurface::showEvent(event);
    window()->installEventFilter(this);
    followWindowState();
}

bool DashboardView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowStateChange) {
        followWindowState();
    }
    return GlassSurface::eventFilter(watched, event);
}

void DashboardView::followWindowState() {
    // In full screen there is nothing to show beyond the corners.
    setCornerRadius(window()->isFullScreen() ? 0 : cornerRadius);
}

void DashboardView::followZoom() {
    const double zoom = dashboardZoom(size(), visibleDashboardSections(services_.settings));
    if (zoom != zoom_) {
        zoom_ = zoom;
        shapeToWindow();
    }
}

SectionRowMetrics DashboardView::metrics() const {
    const QSizeF size = designRect(*this).size();
    return sectionRowMetrics(size.width(), sectionColumns(size, visibleDashboardSections(services_.settings)));
}

void DashboardView::place(QWidget& child, const QRectF& area) const {
    child.setGeometry(wholePoints(zoomed(area, zoom_)));
}

void DashboardView::arrange() {
    const auto switches = dashboardSectionSwitches(services_.settings);
    const auto frames = sectionFrames(designRect(*this).size(), visibleDashboardSections(services_.settings));
    size_t next = 0;
    for (size_t i = 0; i < sections_.size(); ++i) {
        const bool isShown = switches[i]->get();
        if (isShown) {
            sections_[i]->setTier(metrics().tier);
            place(*sections_[i], frames[next++]);
        }
        sections_[i]->setVisible(isShown);
    }
    nothing_->setVisible(frames.empty());
    const QSizeF size = designRect(*this).size();
    const double line = nothing_->style().lineHeight;
    place(*nothing_,
          QRectF(metrics().inset, (size.height() - line) / 2, size.width() - 2 * metrics().inset, line));
    arrangeHeader(metrics().inset);
    arrangeFooter(metrics().inset);
    update();
}

void DashboardView::arrangeHeader(double inset) {
    constexpr int symbolTop = controlsTop + (controlsHeight - symbolSize) / 2;
    place(*symbol_, QRectF(inset, symbolTop, symbolSize, symbolSize));
    place(*wordmark_, QRectF(inset + symbolSize + wordmarkGap, controlsTop, wordmark_->sizeHint().width() + 2,
                             controlsHeight));
    double right = designRect(*this).width() - inset;
    for (auto button = buttons_.rbegin(); button != buttons_.rend(); ++button) {
        right -= controlsHeight;
        place(**button, QRectF(right, controlsTop, controlsHeight, controlsHeight));
        right -= buttonGap;
    }
}

void DashboardView::arrangeFooter(double inset) {
    const QSizeF size = designRect(*this).size();
    const double top = size.height() - dashboardFooterHeight;
    const QSize mark = watermark_->sizeHint();
    const double markLeft = std::floor((size.width() - mark.width()) / 2);
    const double markTop = top + std::floor((dashboardFooterHeight - mark.height()) / 2);
    place(*watermark_, QRectF(QPointF(markLeft, markTop), mark));

    double left = inset + dotDiameter + footerGap;
    for (TextLabel* label : {engineName_, engineDetail_}) {
        const double room = std::max(0.0, markLeft - footerGap - left);
        const double width = std::min<double>(label->sizeHint().width(), room);
        place(*label, QRectF(left, top, width, dashboardFooterHeight));
        left += width + footerGap;
    }
    const double refreshedLeft = markLeft + mark.width() + footerGap;
    place(*refreshed_, QRectF(refreshedLeft, top, size.width() - inset - refreshedLeft, dashboardFooterHeight));
}

}  // namespace kestro
