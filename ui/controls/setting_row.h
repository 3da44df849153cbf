#pragma once

#include "ui/controls/control.h"
#include "ui/controls/text_style.h"

namespace kestro {

/// The mark of a row and where it stands: a check or radio before the texts, a switch or the mark of what is
/// chosen after them.
enum class RowMark { check, radio, toggle, chosen };

/// The lengths that decide where the parts of a row stand; 0 or empty: absent.
struct SettingRowParts {
    RowMark mark = RowMark::toggle;
    double symbol = 0;
    double titleHeight = 15;
    double descriptionHeight = 0;
    double trailingRoom = 0;  ///< kept free before a mark at the right, or at the right edge
};

/// Where the parts of a row stand. Absent parts are empty.
struct SettingRowGeometry {
    QRectF mark;
    QRectF symbol;
    QRectF title;
    QRectF description;
};

SettingRowGeometry settingRowGeometry(const QSizeF& size, const SettingRowParts& parts);

/// A row of a card whose whole width reacts: a switch row, a check row, a radio row, or a row that asks for
/// something and shows what is in force. The symbol is accented while on. Widgets such as badges and mini
/// chips may stand on it as children, in the room kept by setTrailingRoom.
class SettingRow : public Control {
    Q_OBJECT

public:
    SettingRow(RowMark mark, const QString& title, int height, QWidget* parent = nullptr);

    void setDescription(const QString& description);
    void setSymbol(const QString& name, double size);
    void setTitleStyle(const TextStyle& style);
    void setTrailingRoom(double room);

    /// Shows a state without telling anybody. Silent when equal.
    void setOn(bool isOn);
    bool isOn() const { return isOn_; }

    /// A check or switch row changes its own state on a click and tells the new one; a radio or chosen row
    /// tells true and waits for setOn, because what it asks for may be refused.
    void onToggled(std::function<void(bool)> action) { onToggled_ = std::move(action); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QRectF focusArea() const override;
    double focusRadius() const override;
    AccessibleInfo accessibleInfo() const override;

protected:
    void paint(QPainter& painter) override;
    void activated() override;

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
    bool isOn_ = false;
    std::optional<TextStyle> titleStyle_;
    Transition knob_;
    std::function<void(bool)> onToggled_;
};

}  // namespace kestro
