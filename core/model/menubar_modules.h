#pragma once

#include "core/model/menubar_enumerations.h"

#include <vector>

namespace kestro {

/// Edits of the list of shown modules. Each takes the list and returns the edited one. Pure; any thread.
using MenubarModules = std::vector<MenubarModuleType>;

/// Removes a listed module and all its duplicates, or appends one that is not listed. Never removes the only
/// module left.
MenubarModules toggleModule(MenubarModules modules, MenubarModuleType module);

/// Swaps a module with its predecessor and drops its later duplicates. The first module and one that is not listed
/// stay.
MenubarModules moveModuleUp(MenubarModules modules, MenubarModuleType module);

/// Swaps a module with its successor and drops its later duplicates. The last module and one that is not listed
/// stay.
MenubarModules moveModuleDown(MenubarModules modules, MenubarModuleType module);

/// Moves a module to the position of `target`, which makes room; inserts one that is not listed. Does nothing when
/// `target` is not listed or is the module itself.
MenubarModules placeModule(MenubarModules modules, MenubarModuleType module, MenubarModuleType target);

}  // namespace kestro
