#pragma once

#include "core/model/menubar_enumerations.h"

#include <QPoint>
#include <QPointer>

#include <functional>
#include <vector>

class QWidget;

namespace kestro {

class ModuleRow;

/// Reorders the modules by mouse: a picture of the dragged row follows the pointer, and the row whose place it
/// would take is marked. Only rows of shown modules are drop targets. Main thread.
class ModuleDrag {
public:
    /// `canvas` is the widget that the picture moves over; it and the rows outlive the drag.
    ModuleDrag(QWidget& canvas, const std::vector<ModuleRow*>& rows);

    /// Called on a drop with the dragged module and the module whose place it takes.
    void onDropped(std::function<void(MenubarModuleType, MenubarModuleType)> action) {
        onDropped_ = std::move(action);
    }

    /// The pointer moved on the screen while dragging the row.
    void moveTo(ModuleRow& row, const QPoint& globalPosition);

    /// The row was dropped, or the drag was cancelled.
    void end(ModuleRow& row, bool isDropped);

private:
    ModuleRow* rowAt(const QPoint& globalPosition) const;
    void mark(ModuleRow* target);

    QWidget& canvas_;
    const std::vector<ModuleRow*>& rows_;
    QPointer<QWidget> picture_;
    QPoint grip_;
    ModuleRow* target_ = nullptr;
    std::function<void(MenubarModuleType, MenubarModuleType)> onDropped_;
};

}  // namespace kestro
