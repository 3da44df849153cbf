#pragma once

#include <vector>

#include "core/settings/menubar_enumerations.h"

namespace kestro {

/// Edits of the list of shown modules. Each takes the list and returns it changed. Pure; any thread.
using MenubarModules = std::vector<MenubarModuleType>;

/// Removes a listed module, with every repetition of it, or appends one that is not listed. The only module
/// left is never removed.
MenubarModules toggleModule(MenubarModules modules, MenubarModuleType module);

/// Swaps a module with the one before it, without its later repetitions; the first one and one that is not
/// listed stay.
MenubarModules moveModuleUp(MenubarModules modules, MenubarModuleType module);

/// Swaps a module with the one after it, without its later repetitions; the last one and one that is not
/// listed stay.
MenubarModules moveModuleDown(MenubarModules modules, MenubarModuleType module);

/// Gives a module the place of `target`, which makes room; one that is not listed is put in. Nothing happens
/// when `target` is not listed or is the module itself.
MenubarModules placeModule(MenubarModules modules, MenubarModuleType module, MenubarModuleType target);

}  // namespace kestro
