#pragma once

#include "core/base/subscription.h"
#include "ui/decorations/glass_surface.h"
#include "ui/kestro_services.h"
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
/// a footer. Never scrolls. Follows its size, the section switches and the pin live.
class DashboardView : public GlassSurface {
    Q_OBJECT

public:
    DashboardView(const KestroServices& services, const DashboardActions& actions, QWidget* parent = nullptr);

    /// The width that fits the enabled sections, by 480.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

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
    void arrange();
    void arrangeHeader(double inset);
    void arrangeFooter(double inset);

    KestroServices services_;
    DashboardActions actions_;
    SymbolView* symbol_;
    TextLabel* wordmark_;
    std::array<Button*, 4> buttons_;
    std::array<DashboardSection*, 5> sections_;
    TextLabel* engineName_;
    TextLabel* engineDetail_;
    OrvanelWatermark* watermark_;
    TextLabel* refreshed_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
