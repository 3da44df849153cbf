#pragma once

#include "ui/controls/view.h"
#include "ui/paint/text_style.h"

namespace kestro {

/// One large figure with its unit on the same baseline.
class DisplayFigure : public View {
    Q_OBJECT

public:
    DisplayFigure(const QString& name, const QString& unit, QWidget* parent = nullptr);

    /// The placeholder of a figure that is not measured yet is shown without its unit. No-op when unchanged.
    void setFigure(const QString& figure);
    void setSize(double size);

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString shownUnit() const;

    QString name_;
    QString unit_;
    QString figure_;
    double size_ = text_styles::displayFigure.size;
};

}  // namespace kestro
