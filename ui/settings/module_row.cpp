#include "ui/settings/module_row.h"

#include "ui/controls/button.h"
#include "ui/controls/text_label.h"
#include "ui/controls/words.h"
#include "ui/paint/hairline.h"
#include "ui/paint/surface_paint.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>

namespace kestro {

namespace {

constexpr int chipSize = 22;
constexpr int chipGap = 3;
constexpr int rightInset = 9;
constexpr int placeWidth = 22;
constexpr int sampleWidth = 120;
constexpr int sampleGap = 8;
constexpr double titleSize = 11.5;
constexpr double targetRadius = 6;
constexpr double targetFill = 0.16;
constexpr double targetBorder = 0.55;

TextStyle moduleTitle(bool isShown) {
    TextStyle style = text_styles::settingTitle;
    style.size = titleSize;
    style.ink = isShown ? KestroTheme::textPrimary : KestroTheme::textSecondary;
    return style;
}

}  // namespace

ModuleRow::ModuleRow(MenubarModuleType module, QWidget* parent)
    : SettingRow(RowMark::check, Words(displayName(module)), rowHeight, parent),
      module_(module),
      sample_(new TextLabel(Words(previewSample(module)), this)),
      place_(new TextLabel(QString(), this)),
      up_(makeChip(QStringLiteral("chevron.up"), QStringLiteral("up"))),
      down_(makeChip(QStringLiteral("chevron.down"), QStringLiteral("down"))) {
    setSymbol(Words(iconName(module)), 13);
    setTrailingRoom(rightInset + 2 * chipSize + chipGap + placeWidth);
    sample_->setStyle(text_styles::settingDescription);
    sample_->setTextAlignment(Qt::AlignRight);
    place_->setStyle({11, 14, text_styles::w600, 0, KestroTheme::accentCool});
    place_->setTextAlignment(Qt::AlignHCenter);
    for (TextLabel* label : {sample_, place_}) {
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
}

Button* ModuleRow::makeChip(const QString& symbol, const QString& direction) {
    auto* chip = new Button(ButtonKind::chip, this);
    chip->setSymbol(symbol, 9);
    chip->setSquare(chipSize);
    chip->setAccessibleName(QStringLiteral("Move ") + QString(Words(displayName(module_))) + QLatin1Char(' ') +
                            direction);
    return chip;
}

void ModuleRow::setPlace(std::optional<std::size_t> place, std::size_t count) {
    const bool isNews = place != shownAt_ && (hasFocus() || up_->hasFocus() || down_->hasFocus());
    shownAt_ = place;
    setOn(place.has_value());
    setTitleStyle(moduleTitle(place.has_value()));
    place_->setText(place ? QString::number(*place + 1) : QString());
    up_->setAvailable(place && *place > 0);
    down_->setAvailable(place && *place + 1 < count);
    if (isNews) {
        announceName();
    }
}

void ModuleRow::onMoveUp(std::function<void()> action) {
    up_->onClick(std::move(action));
}

void ModuleRow::onMoveDown(std::function<void()> action) {
    down_->onClick(std::move(action));
}

AccessibleInfo ModuleRow::accessibleInfo() const {
    AccessibleInfo info = SettingRow::accessibleInfo();
    info.name =
        QString(Words(displayName(module_))) +
        (shownAt_ ? QStringLiteral(", shown, position %1").arg(*shownAt_ + 1) : QStringLiteral(", hidden"));
    return info;
}

void ModuleRow::resizeEvent(QResizeEvent* event) {
    SettingRow::resizeEvent(event);
    const int top = (height() - chipSize) / 2;
    int right = width() - rightInset - chipSize;
    down_->setGeometry(right, top, chipSize, chipSize);
    right -= chipGap + chipSize;
    up_->setGeometry(right, top, chipSize, chipSize);
    const auto place = [&](TextLabel& label, int width) {
        right -= width;
        label.setGeometry(right, 0, width, height());
    };
    place(*place_, placeWidth + sampleGap / 2);
    right -= sampleGap;
    place(*sample_, sampleWidth);
}

bool ModuleRow::hitTest(const QPoint& position) const {
    return rect().contains(position) && position.x() < up_->x();
}

void ModuleRow::setDropTarget(bool isTarget) {
    isDropTarget_ = isTarget;
    update();
}

void ModuleRow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton && isDragged_) {
        giveUpDrag();
        return;
    }
    SettingRow::mousePressEvent(event);
    if (event->isAccepted()) {
        grip_ = event->pos();
    }
}

void ModuleRow::mouseMoveEvent(QMouseEvent* event) {
    if (!grip_ || !event->buttons().testFlag(Qt::LeftButton)) {
        return;
    }
    const int threshold = QGuiApplication::styleHints()->startDragDistance();
    if (!isDragged_ && (event->pos() - *grip_).manhattanLength() >= threshold) {
        cancelPress();
        setCursor(Qt::ClosedHandCursor);
        if (onDragged_) {
            onDragged_(mapToGlobal(*grip_));  // before the row changes to its dragged look
        }
        isDragged_ = true;
        update();
    }
    if (!isDragged_) {
        SettingRow::mouseMoveEvent(event);
    } else if (onDragged_) {
        onDragged_(event->globalPosition().toPoint());
    }
}

void ModuleRow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        if (event->button() == Qt::RightButton) {
            giveUpDrag();
        }
        return;
    }
    const bool wasDragged = isDragged_;
    grip_.reset();
    endDrag(true);
    if (!wasDragged) {
        SettingRow::mouseReleaseEvent(event);
    }
}

void ModuleRow::hideEvent(QHideEvent* event) {
    giveUpDrag();
    SettingRow::hideEvent(event);
}

void ModuleRow::giveUpDrag() {
    grip_.reset();
    endDrag(false);
}

void ModuleRow::endDrag(bool isDropped) {
    if (std::exchange(isDragged_, false)) {
        unsetCursor();
        update();
        if (onDragEnded_) {
            onDragEnded_(isDropped);
        }
    }
}

void ModuleRow::paint(QPainter& painter) {
    if (isDropTarget_) {
        const QRectF area = QRectF(rect()).adjusted(4, 1, -4, -1);
        const Ink accent = KestroTheme::accentCool;
        paintRounded(painter, area, targetRadius, accent.faded(targetFill).color());
        kestroHairlineBorder(painter, area, targetRadius, accent.faded(targetBorder).color());
    }
    painter.setOpacity(isDragged_ ? disabledOpacity : 1);
    SettingRow::paint(painter);
}

void ModuleRow::keyPressEvent(QKeyEvent* event) {
    if (isDragged_ && event->key() == Qt::Key_Escape) {
        giveUpDrag();
        return;
    }
    const bool isUp = event->key() == Qt::Key_Up;
    if (event->modifiers().testFlag(Qt::AltModifier) && (isUp || event->key() == Qt::Key_Down)) {
        (isUp ? up_ : down_)->click();
        return;
    }
    SettingRow::keyPressEvent(event);
}

}  // namespace kestro
