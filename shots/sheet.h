#pragma once

#include "ui/theme/kestro_theme.h"

#include <QPainter>
#include <QWidget>

namespace kestro::shots {

/// A sheet in the palette's ground colour, with children at fixed positions.
class Sheet : public QWidget {
public:
    explicit Sheet(const QSize& size) { resize(size); }

    /// Takes ownership of `part` and places it in `area`.
    void place(QWidget* part, const QRect& area) {
        part->setParent(this);
        part->setGeometry(area);
        part->show();
    }

    /// Places `part` at its size hint.
    void place(QWidget* part, const QPoint& topLeft) {
        part->setParent(this);
        part->setGeometry(QRect(topLeft, part->sizeHint()));
        part->show();
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), KestroTheme::ground()); }
};

/// Shows the picture of a separate window, such as a menu, on a sheet.
class PictureOf : public QWidget {
public:
    explicit PictureOf(QWidget& window) : picture_(window.grab()) { resize(window.size()); }

    QSize sizeHint() const override { return (QSizeF(picture_.size()) / picture_.devicePixelRatio()).toSize(); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawPixmap(0, 0, picture_); }

private:
    QPixmap picture_;
};

}  // namespace kestro::shots
