#include "ui/settings/module_drag.h"

#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"
#include "ui/settings/module_row.h"
#include "ui/theme/kestro_theme.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace kestro {

namespace {

constexpr double cornerRadius = 6;

/// A picture of the dragged row, taken when the drag started.
class RowPicture : public View {
public:
    RowPicture(ModuleRow& row, QWidget& canvas) : View(&canvas), picture_(row.size() * row.devicePixelRatioF()) {
        picture_.setDevicePixelRatio(row.devicePixelRatioF());
        picture_.fill(Qt::transparent);
        row.render(&picture_, QPoint(), QRegion(), QWidget::DrawChildren);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        resize(row.size());
    }

    AccessibleInfo accessibleInfo() const override { return AccessibleInfo::decoration(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintRounded(painter, rect(), cornerRadius, KestroTheme::ground());
        kestroHairlineBorder(painter, rect(), cornerRadius, KestroTheme::hairlineStrong());
        painter.drawPixmap(0, 0, picture_);
    }

private:
    QPixmap picture_;
};

}  // namespace

ModuleDrag::ModuleDrag(QWidget& canvas, const std::vector<ModuleRow*>& rows) : canvas_(canvas), rows_(rows) {}

void ModuleDrag::moveTo(ModuleRow& row, const QPoint& globalPosition) {
    if (picture_ == nullptr) {
        picture_ = new RowPicture(row, canvas_);
        grip_ = row.mapFromGlobal(globalPosition);
        picture_->show();
    }
    picture_->move(canvas_.mapFromGlobal(globalPosition) - grip_);
    ModuleRow* under = rowAt(globalPosition);
    mark(under != &row && under != nullptr && under->isOn() ? under : nullptr);
}

void ModuleDrag::end(ModuleRow& row, bool isDropped) {
    const ModuleRow* target = target_;
    mark(nullptr);
    if (picture_ != nullptr) {
        // Deleted later: the list may be hiding its children one by one right now.
        picture_->hide();
        picture_->deleteLater();
        picture_ = nullptr;
    }
    if (isDropped && target != nullptr && onDropped_) {
        onDropped_(row.module(), target->module());
    }
}

ModuleRow* ModuleDrag::rowAt(const QPoint& globalPosition) const {
    const auto found = std::ranges::find_if(rows_, [&globalPosition](const ModuleRow* row) {
        return row->rect().contains(row->mapFromGlobal(globalPosition));
    });
    return found == rows_.end() ? nullptr : *found;
}

void ModuleDrag::mark(ModuleRow* target) {
    if (target == target_) {
        return;
    }
    if (target_ != nullptr) {
        target_->setDropTarget(false);
    }
    target_ = target;
    if (target_ != nullptr) {
        target_->setDropTarget(true);
    }
}

}  // namespace kestro
