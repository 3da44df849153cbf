#include "ui/paint/tooltip.h"

#include "ui/paint/surface_paint.h"
#include "ui/paint/text_painter.h"
#include "ui/theme/kestro_fonts.h"
#include "ui/theme/window_compositing.h"
#include "ui/theme/window_shape.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTextLayout>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr int paddingX = 8;
constexpr int paddingY = 4;
constexpr double cornerRadius = 5;
constexpr int pointerGap = 18;

const TextStyle textStyle{10.5, 14, QFont::Medium, 0, KestroTheme::textPrimary};

QPointer<Tooltip> shared;

Tooltip& sharedTooltip() {
    if (!shared) {
        shared = new Tooltip(QString());
        // No widget may outlive the application object.
        qAddPostRoutine([] { delete shared; });
    }
    return *shared;
}

}  // namespace

Tooltip::Tooltip(const QString& text) : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setText(text);
}

void Tooltip::follow(QWidget& owner, const QString& help, const QEvent& event) {
    switch (event.type()) {
        case QEvent::Enter:
            sharedTooltip().await(owner, help);
            break;
        case QEvent::Leave:
        case QEvent::Hide:
        case QEvent::MouseButtonPress:
        case QEvent::KeyPress:
        case QEvent::Wheel:
        case QEvent::WindowDeactivate:
            if (shared && shared->owner_ == &owner) {
                shared->disappear();
            }
            break;
        default:
            break;
    }
}

void Tooltip::change(const QWidget& owner, const QString& help) {
    if (!shared || shared->owner_ != &owner) {
        return;
    }
    if (help.isEmpty()) {
        shared->disappear();
        return;
    }
    shared->setText(help);
    if (shared->isVisible()) {
        shared->settle();
    }
}

Tooltip* Tooltip::current() {
    return shared;
}

QStringList Tooltip::wrapped(const QString& text, double width) {
    QStringList lines;
    QTextLayout layout(singleLine(text), KestroFonts::font(textStyle.size, textStyle.weight, textStyle.tracking));
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (lines.size() == mostLines) {
            lines.last() = lines.last().trimmed() + QChar(0x2026);
            break;
        }
        lines.append(layout.text().mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}

QRect Tooltip::placed(const QSize& size, const QPoint& pointer, const QRect& screen) {
    QRect area(QPoint(pointer.x(), pointer.y() + pointerGap), size);
    if (area.bottom() > screen.bottom()) {
        area.moveBottom(pointer.y() - 4);
    }
    area.moveLeft(
        std::clamp(area.left(), screen.left(), std::max(screen.left(), screen.right() - size.width() + 1)));
    area.moveTop(std::max(area.top(), screen.top()));
    return area;
}

QSize Tooltip::sizeHint() const {
    double widest = 0;
    for (const QString& line : lines_) {
        widest = std::max(widest, textWidth(line, textStyle));
    }
    const int height = static_cast<int>(textStyle.lineHeight) * static_cast<int>(lines_.size());
    return {static_cast<int>(std::ceil(widest)) + 2 * paddingX, height + 2 * paddingY};
}

void Tooltip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintHudGlass(painter, rect(), cornerRadius);
    QRectF line(paddingX, paddingY, width() - 2 * paddingX, textStyle.lineHeight);
    for (const QString& text : lines_) {
        drawText(painter, line, text, textStyle);
        line.translate(0, textStyle.lineHeight);
    }
}

void Tooltip::timerEvent(QTimerEvent* event) {
    if (event->timerId() == wait_.timerId()) {
        endWait();
    }
}

void Tooltip::endWait() {
    if (wait_.isActive()) {
        wait_.stop();
        appear();
    }
}

void Tooltip::await(QWidget& owner, const QString& help) {
    disappear();
    setText(help);
    owner_ = &owner;
    wait_.start(delayMilliseconds, this);
}

void Tooltip::setText(const QString& text) {
    lines_ = wrapped(text, widestText);
    resize(sizeHint());
}

void Tooltip::appear() {
    if (!owner_ || !owner_->isVisible() || !owner_->underMouse()) {
        return;
    }
    pointer_ = QCursor::pos();
    settle();
    show();
}

void Tooltip::settle() {
    const QScreen* screen = QGuiApplication::screenAt(pointer_);
    if (!screen) {
        screen = owner_->screen();
    }
    setGeometry(placed(sizeHint(), pointer_, screen->geometry()));
    create();  // only a window that exists can be shaped in device pixels
    shapeWindow(*this, cornerRadius, window_compositing::isAvailable());
    update();
}

void Tooltip::disappear() {
    wait_.stop();
    owner_.clear();
    hide();
}

}  // namespace kestro
