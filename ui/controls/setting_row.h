#pragma once

#include "ui/controls/control.h"
#include "ui/paint/text_style.h"

namespace kestro {

/// The mark of a row: a check or radio before the texts, or a switch or chosen mark after them.
enum class RowMark { check, radio, toggle, chosen };

/// The measures that determine a row's layout; 0 or empty: absent.
struct SettingRowParts {
    RowMark mark = RowMark::toggle;
    double symbol = 0;
    double titleHeight = 15;
    double descriptionHeight = 0;
    double trailingRoom = 0;  ///< reserved before a mark at the right, or at the right edge
};

/// The areas of a row's parts. Absent parts are empty.
struct SettingRowGeometry {
    QRectF mark;
    QRectF symbol;
    QRectF title;
    QRectF description;
};

SettingRowGeometry settingRowGeometry(const QSizeF& size, const SettingRowParts& parts);

/// A row of a card that responds to clicks over its whole width: a switch row, a check row, a radio row, or a row
/// that requests a change and shows the active choice. A check or switch row switches itself on a click; a radio
/// or chosen row waits for setOn, because the request may be refused. The symbol is accented while on. Badges and
/// mini chips may be placed on it as children, in the room reserved by setTrailingRoom.
class SettingRow : public Control {
    Q_OBJECT

public:
    SettingRow(RowMark mark, const QString& title, int height, QWidget* parent = nullptr);

    void setDescription(const QString& description);
    void setSymbol(const QString& name, double size);
    void setTitleStyle(const TextStyle& style);
    void setTrailingRoom(double room);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QRectF focusArea() const override;
    double focusRadius() const override;

    AccessibleInfo accessibleInfo() const override;

protected:
    void paint(QPainter& painter) override;
    void activated() override;
    void stateDidChange() override;

private:
    SettingRowGeometry geometryNow() const;
    TextStyle titleStyle() const;

    RowMark mark_;
    QString title_;
    QString description_;
    QString symbol_;
    double symbolSize_ = 0;
    double trailingRoom_ = 0;
    int height_;
    std::optional<TextStyle> titleStyle_;
    Transition knob_;
};

}  // namespace kestro
