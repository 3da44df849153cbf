#pragma once

#include <QPointer>
#include <QWidget>

namespace kestro {

class Control;

/// The ring around the control with keyboard focus: a gap in the ground colour and a line in the accent, both
/// outside the control. It is stacked above the control's siblings in the nearest ancestor that clips (a scroll
/// area's content) or in the window, follows the control, and is transparent to events. Main thread.
class FocusRing : public QWidget {
    Q_OBJECT

public:
    static constexpr double kGap = 1.5;
    static constexpr double kLine = 1.5;

    /// Shows the window's single ring on `control`, moving it from its previous control.
    static void showOn(Control& control);
    static void hideFrom(Control& control);

    explicit FocusRing(Control& control);

    /// Marks a widget with scrolling content, so that rings inside scroll and clip with it.
    static void setHost(QWidget& widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    QPointer<Control> control_;
};

}  // namespace kestro
