#pragma once

#include "core/settings/menubar_enumerations.h"
#include "ui/controls/setting_row.h"

#include <functional>
#include <optional>

namespace kestro {

class Button;
class TextLabel;

/// A module of the readout: whether it shows, a sample of it, its place in the list, and chips that move it.
/// Alt with the arrows up and down moves it as well.
class ModuleRow : public SettingRow {
    Q_OBJECT

public:
    static constexpr int kRowHeight = 29;

    explicit ModuleRow(MenubarModuleType module, QWidget* parent = nullptr);

    MenubarModuleType module() const { return module_; }

    /// The place among `count` shown modules, from 0; none: it is not shown.
    void setPlace(std::optional<std::size_t> place, std::size_t count);

    void onMoveUp(std::function<void()> action);
    void onMoveDown(std::function<void()> action);

    Button& upButton() { return *up_; }
    Button& downButton() { return *down_; }

    AccessibleInfo accessibleInfo() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    /// The chips, pressed while they are disabled, do not toggle the row.
    bool hitTest(const QPoint& position) const override;

private:
    Button* makeChip(const QString& symbol, const QString& direction);

    MenubarModuleType module_;
    TextLabel* sample_;
    TextLabel* place_;
    Button* up_;
    Button* down_;
    std::optional<std::size_t> shownAt_;
};

}  // namespace kestro
