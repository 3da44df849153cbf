#pragma once

#include "core/model/menubar_enumerations.h"
#include "ui/controls/setting_row.h"

#include <functional>
#include <optional>

namespace kestro {

class Button;
class TextLabel;

/// A module of the readout: whether it is shown, a sample of it, its place in the list, and chips that move it.
/// Alt with Up or Down moves it too, and it can be dragged; Escape and the right button cancel the drag.
class ModuleRow : public SettingRow {
    Q_OBJECT

public:
    static constexpr int rowHeight = 29;

    explicit ModuleRow(MenubarModuleType module, QWidget* parent = nullptr);

    MenubarModuleType module() const { return module_; }

    /// The place among `count` shown modules, from 0; nullopt: not shown.
    void setPlace(std::optional<std::size_t> place, std::size_t count);

    void onMoveUp(std::function<void()> action);
    void onMoveDown(std::function<void()> action);

    /// Called with the pointer's screen position while the row is dragged, and when the drag has ended.
    void onDragged(std::function<void(const QPoint&)> action) { onDragged_ = std::move(action); }
    void onDragEnded(std::function<void(bool isDropped)> action) { onDragEnded_ = std::move(action); }

    /// Marks the row as the drop target of a dragged row.
    void setDropTarget(bool isTarget);
    bool isDropTarget() const { return isDropTarget_; }

    Button& upButton() { return *up_; }
    Button& downButton() { return *down_; }

    AccessibleInfo accessibleInfo() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paint(QPainter& painter) override;

    /// Excludes the chips: pressing a disabled chip must not toggle the row.
    bool hitTest(const QPoint& position) const override;

private:
    void endDrag(bool isDropped);
    void giveUpDrag();
    Button* makeChip(const QString& symbol, const QString& direction);

    MenubarModuleType module_;
    TextLabel* sample_;
    TextLabel* place_;
    Button* up_;
    Button* down_;
    std::optional<std::size_t> shownAt_;
    std::optional<QPoint> grip_;  ///< where the button was pressed, as long as this may become a drag
    bool isDragged_ = false;
    bool isDropTarget_ = false;
    std::function<void(const QPoint&)> onDragged_;
    std::function<void(bool)> onDragEnded_;
};

}  // namespace kestro
