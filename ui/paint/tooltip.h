#pragma once

#include <QBasicTimer>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

namespace kestro {

/// The program's only tooltip: plain text on glass, shown below the pointer after it has rested on a view for half
/// a second. The next press, key or leave hides it. Main thread.
class Tooltip : public QWidget {
    Q_OBJECT

public:
    static constexpr int delayMilliseconds = 500;
    static constexpr int widestText = 420;
    static constexpr int mostLines = 8;

    /// Handles an event of `owner` whose help is `help`: starts the delay or hides the tooltip.
    static void follow(QWidget& owner, const QString& help, const QEvent& event);

    /// The help of `owner` has changed: its open or pending tooltip shows the new text, or goes away if that is
    /// empty.
    static void change(const QWidget& owner, const QString& help);

    /// The shared tooltip; null until first needed.
    static Tooltip* current();

    /// Breaks a text into at most mostLines lines of at most `width`; a longer text ends in "…".
    static QStringList wrapped(const QString& text, double width);

    /// The area of a tooltip of `size` for a pointer at `pointer`, kept on `screen`.
    static QRect placed(const QSize& size, const QPoint& pointer, const QRect& screen);

    /// A separate tooltip that shows `text`, for pictures and tests. The shared one appears through `follow`.
    explicit Tooltip(const QString& text);

    bool isWaiting() const { return wait_.isActive(); }

    /// Ends the delay as the timer does: the tooltip appears if the pointer still rests on the view.
    void endWait();

    const QStringList& lines() const { return lines_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void setText(const QString& text);
    void await(QWidget& owner, const QString& help);
    void appear();
    void disappear();

    /// Sets the position and shape for the text below the pointer.
    void settle();

    QStringList lines_;
    QPointer<QWidget> owner_;
    QBasicTimer wait_;
    QPoint pointer_;  ///< the resting position when the tooltip appeared
};

}  // namespace kestro
