#pragma once

#include <QBasicTimer>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

namespace kestro {

/// The one tooltip of the program: plain text on glass, shown below the pointer after it has rested on a
/// view for half a second, gone on the next press, key or leave. Main thread.
class Tooltip : public QWidget {
    Q_OBJECT

public:
    static constexpr int kDelayMilliseconds = 500;
    static constexpr int kWidestText = 420;
    static constexpr int kMostLines = 8;

    /// Follows an event of `owner` whose help is `help`: starts the wait, or ends the tooltip.
    static void follow(QWidget& owner, const QString& help, const QEvent& event);

    /// The help of `owner` is another one now: an open or waiting tooltip of it shows that, or ends without one.
    static void change(const QWidget& owner, const QString& help);

    /// The program's own tooltip; null before it was first needed.
    static Tooltip* current();

    /// Breaks a text into lines that are at most `width` wide, at most kMostLines; a longer text ends in "…".
    static QStringList wrapped(const QString& text, double width);

    /// Where a tooltip of `size` goes for a pointer at `pointer`, kept on `screen`.
    static QRect placed(const QSize& size, const QPoint& pointer, const QRect& screen);

    /// A tooltip that shows `text`; for pictures and tests. The program's own one appears through `follow`.
    explicit Tooltip(const QString& text);

    bool isWaiting() const { return wait_.isActive(); }

    /// Ends the wait, as its time does: the tooltip appears if the pointer still rests on the view.
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

    /// Takes the place and shape that the text needs below the pointer.
    void settle();

    QStringList lines_;
    QPointer<QWidget> owner_;
    QBasicTimer wait_;
    QPoint pointer_;  ///< where it rested when the tooltip appeared
};

}  // namespace kestro
