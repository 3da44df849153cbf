#pragma once

#include "core/model/menubar_modules.h"
#include "ui/settings/module_drag.h"
#include "ui/settings/settings_pane.h"

#include <vector>

namespace kestro {

class ModuleRow;

/// What the status bar shows: the readout's modules and separator, the extras, and the refresh profile.
class MenubarTab : public SettingsPane {
    Q_OBJECT

public:
    explicit MenubarTab(const KestroServices& services);

private:
    QWidget* liveSimulatedMenubar();
    QWidget* extrasCard();
    QWidget* modulesGroup();
    QWidget* modulesCard();
    ModuleRow* moduleRow(MenubarModuleType module);
    QWidget* delimiterAndLabels();
    QWidget* profileGroup();
    void setModules(MenubarModules modules);
    void showModules();

    std::vector<ModuleRow*> rows_;
    ModuleDrag drag_{*this, rows_};
};

}  // namespace kestro
