#include "core/model/menubar_modules.h"

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

/// Drops later duplicates of a module: swapping two equal neighbours would have no effect.
MenubarModules listedOnce(MenubarModules modules, MenubarModuleType module) {
    const auto found = std::ranges::find(modules, module);
    if (found != modules.end()) {
        modules.erase(std::remove(found + 1, modules.end(), module), modules.end());
    }
    return modules;
}

}  // namespace

MenubarModules toggleModule(MenubarModules modules, MenubarModuleType module) {
    if (std::ranges::find(modules, module) == modules.end()) {
        modules.push_back(module);
        return modules;
    }
    std::erase(modules, module);
    if (modules.empty()) {
        modules.push_back(module);
    }
    return modules;
}

MenubarModules moveModuleUp(MenubarModules modules, MenubarModuleType module) {
    modules = listedOnce(std::move(modules), module);
    const auto found = std::ranges::find(modules, module);
    if (found != modules.end() && found != modules.begin()) {
        std::iter_swap(found, found - 1);
    }
    return modules;
}

MenubarModules moveModuleDown(MenubarModules modules, MenubarModuleType module) {
    modules = listedOnce(std::move(modules), module);
    const auto found = std::ranges::find(modules, module);
    if (found != modules.end() && found + 1 != modules.end()) {
        std::iter_swap(found, found + 1);
    }
    return modules;
}

MenubarModules placeModule(MenubarModules modules, MenubarModuleType module, MenubarModuleType target) {
    const auto found = std::ranges::find(modules, target);
    if (module == target || found == modules.end()) {
        return modules;
    }
    const auto place = found - modules.begin();
    std::erase(modules, module);
    const auto last = static_cast<std::ptrdiff_t>(modules.size());
    modules.insert(modules.begin() + std::min(place, last), module);
    return modules;
}

}  // namespace kestro
