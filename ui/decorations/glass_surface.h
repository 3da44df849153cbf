#pragma once

#include "core/base/subscription.h"
#include "ui/decorations/halftone_fields.h"
#include "ui/theme/visual_effect_blur.h"

#include <QBasicTimer>
#include <QImage>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

namespace kestro {

class UserSettings;

/// The pane that makes up a popover or a window: glass, ink, edge fade and rim, with the content on top as child
/// widgets. It fills its window and makes it translucent where windows are composited, requesting blur behind it;
/// elsewhere it is opaque with shaped corners. The backdrop is rendered once per size, scale and settings, so that
/// a redraw costs one blit, and is released while hidden. It is lit whether or not its window is active. Follows
/// the settings live, and while shown notices within seconds when a compositing manager starts or ends.
class GlassSurface : public QWidget {
public:
    /// `cornerRadius` in design points. Works as a top-level widget or as the only child that fills one.
    GlassSurface(UserSettings& settings, double cornerRadius, QWidget* parent = nullptr);
    ~GlassSurface() override;

    /// In design points; 0 for a window that fills the screen.
    void setCornerRadius(double radius);

    /// The number of times that the backdrop has been rendered.
    int renderCount() const { return renderCount_; }

protected:
    /// The ink of this surface at its current size, in design points; none by default.
    virtual std::optional<PlacedHalftoneField> halftone() const;

    UserSettings& settings() const { return settings_; }

    /// Call when the zoom has changed.
    void shapeToWindow();

    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    struct Backdrop;

    Backdrop wantedBackdrop() const;
    QImage renderBackdrop(const Backdrop& backdrop) const;
    bool lookAtCompositing();

    UserSettings& settings_;
    double cornerRadius_;
    VisualEffectBlur effect_;
    std::unique_ptr<VisualEffectView> glass_;
    std::unique_ptr<Backdrop> rendered_;
    QImage image_;
    bool isComposited_ = true;
    bool isBlurWanted_ = false;
    QBasicTimer compositingCheck_;
    int renderCount_ = 0;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
