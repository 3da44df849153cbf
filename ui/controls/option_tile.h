#pragma once

#include "ui/controls/control.h"

namespace kestro {

/// A choice with a preview: a picture, and below it a radio mark with the label.
class OptionTile : public Control {
    Q_OBJECT

public:
    static constexpr int labelHeight = 26;

    /// Paints the picture into the given area, clipped to the tile's rounded outline.
    using Picture = std::function<void(QPainter&, const QRectF&)>;

    OptionTile(const QString& label, int pictureHeight, Picture picture, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QRectF focusArea() const override;

protected:
    void paint(QPainter& painter) override;

private:
    void paintLabel(QPainter& painter) const;

    QString label_;
    int pictureHeight_;
    Picture picture_;
};

}  // namespace kestro
