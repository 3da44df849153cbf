#pragma once

#include <QAccessible>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace kestro {

/// A numeric value that assistive technology can read and set.
struct AccessibleRange {
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    double step = 0;
    std::function<void(double)> set;  ///< empty: read only
};

/// What a view, or a part that it paints, exposes to assistive technology.
struct AccessibleInfo {
    QAccessible::Role role = QAccessible::StaticText;
    QString name;
    QString description;
    QString value;
    std::optional<bool> checked;   ///< absent: not checkable
    std::optional<bool> selected;  ///< absent: not selectable
    std::optional<AccessibleRange> range;
    std::function<void()> press;  ///< empty: not pressable
    QRect area;                   ///< of a part, in the view's coordinates; ignored for a view
    bool isDecoration = false;    ///< hidden from assistive technology: ink, watermarks, rules

    static AccessibleInfo decoration() {
        AccessibleInfo info;
        info.isDecoration = true;
        return info;
    }
};

/// A widget painted with QPainter: the base of every control and widget in the interface. It has a help text
/// (shown as a tooltip) and describes itself and its painted parts to assistive technology. Main thread.
class View : public QWidget {
    Q_OBJECT

public:
    explicit View(QWidget* parent = nullptr);

    /// Plain text for the tooltip and the spoken description. Empty: no tooltip.
    void setHelp(const QString& help);
    const QString& help() const { return help_; }

    virtual AccessibleInfo accessibleInfo() const;

    /// The painted parts that are separate accessible elements, in reading order.
    virtual std::vector<AccessibleInfo> accessibleParts() const { return {}; }

protected:
    /// Announce a change to assistive technology, if any is in use: of the check state, the value, the name (which
    /// contains the figures that the view shows), or the state of a painted part.
    void announceChecked();
    void announceValue();
    virtual void announceName();
    void announcePart(int index);

    bool event(QEvent* event) override;

private:
    QString help_;
};

}  // namespace kestro
