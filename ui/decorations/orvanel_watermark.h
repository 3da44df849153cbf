#pragma once

#include "ui/controls/view.h"

#include <QSizeF>
#include <QString>

class QPainter;

namespace kestro {

/// The maker's mark: a printer's registration mark, its inks slightly out of register, and the word "ORVANEL". It
/// accepts no input and is hidden from assistive technology. Main thread.
class OrvanelWatermark : public View {
    Q_OBJECT

public:
    enum class Variant { full, compact };

    explicit OrvanelWatermark(Variant variant, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    AccessibleInfo accessibleInfo() const override;

    /// The size of the mark with the word, in points.
    static QSizeF markSize(Variant variant);

    /// Paints it with its right edge at `rightCentre`, vertically centred there.
    static void paint(QPainter& painter, const QPointF& rightCentre, Variant variant);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Variant variant_;
};

}  // namespace kestro
