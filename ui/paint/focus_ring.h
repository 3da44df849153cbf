#pragma once

#include <QPointer>
#include <QWidget>

namespace kestro {

/// The outline that a focus ring surrounds.
class FocusRingTarget {
public:
    virtual ~FocusRingTarget() = default;

    /// In the coordinates of the control.
    virtual QRectF focusArea() const = 0;
    virtual double focusRadius() const = 0;
};

/// The ring around the control with keyboard focus: a gap in the ground colour and a line in the accent, both
/// outside the control. It is stacked above the control's siblings in the nearest ancestor that clips (a scroll
/// area's content) or in the window, follows the control, and is transparent to events. Main thread.
class FocusRing : public QWidget {
    Q_OBJECT

public:
    static constexpr double ringGap = 1.5;
    static constexpr double ringWidth = 1.5;

    /// Shows the program's single ring on `control`, whose outline is `target`, moving it from its previous
    /// control.
    static void showOn(QWidget& control, const FocusRingTarget& target);
    static void hideFrom(QWidget& control);

    FocusRing(QWidget& control, const FocusRingTarget& target);

    /// Marks a widget with scrolling content, so that rings inside scroll and clip with it.
    static void setHost(QWidget& widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    QPointer<QWidget> control_;
    const FocusRingTarget& target_;  // alive as long as the control
};

}  // namespace kestro
