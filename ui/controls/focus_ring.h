#pragma once

#include <QPointer>
#include <QWidget>

namespace kestro {

class Control;

/// The ring around the control that has the keyboard's focus: a gap of the ground's colour and a line of the
/// accent, both outside the control. It lies over the control's siblings in the nearest ancestor that clips
/// (a scroll area's content) or in the window, follows the control, and lets every event pass. Main thread.
class FocusRing : public QWidget {
    Q_OBJECT

public:
    static constexpr double kGap = 1.5;
    static constexpr double kLine = 1.5;

    /// Shows one ring on `control`, moving it from wherever it was in that window.
    static void showOn(Control& control);
    static void hideFrom(Control& control);

    explicit FocusRing(Control& control);

    /// Marks a widget whose content scrolls, so that rings within it scroll and are clipped with it.
    static void setHost(QWidget& widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();

    QPointer<Control> control_;
};

}  // namespace kestro
