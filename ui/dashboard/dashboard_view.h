#pragma once

#include "core/base/subscription.h"
#include "ui/dashboard/dashboard_layout.h"
#include "ui/decorations/glass_surface.h"
#include "ui/kestro_services.h"
#include "ui/paint/zoom.h"
#include "ui/surface_actions.h"

#include <array>
#include <vector>

namespace kestro {

class Button;
class DashboardSection;
class OrvanelWatermark;
class SymbolView;
class TextLabel;

/// The content of the dashboard window: a header with the window controls, the enabled sections side by side, and
/// a footer. Never scrolls. In large windows the whole of it is enlarged, so that it can be read from a distance.
/// Follows its size, the section switches and the pin live.
class DashboardView : public GlassSurface, public ZoomedView {
    Q_OBJECT

public:
    DashboardView(const KestroServices& services, const DashboardActions& actions, QWidget* parent = nullptr);

    /// The width that fits the enabled sections, by 480.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    double zoom() const override { return zoom_; }

protected:
    std::optional<PlacedHalftoneField> halftone() const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Button* makeHeaderButton(const QString& symbol, double size, const QString& help,
                             std::function<void()> action);
    void showPin();
    void followWindowState();
    void followZoom();
    void arrange();
    void arrangeHeader(double inset);
    void arrangeFooter(double inset);
    void place(QWidget& child, const QRectF& area) const;
    SectionRowMetrics metrics() const;

    KestroServices services_;
    DashboardActions actions_;
    double zoom_ = 1;
    SymbolView* symbol_;
    TextLabel* wordmark_;
    std::array<Button*, 4> buttons_;
    std::array<DashboardSection*, 5> sections_;
    TextLabel* engineName_;
    TextLabel* engineDetail_;
    TextLabel* nothing_;
    OrvanelWatermark* watermark_;
    TextLabel* refreshed_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
