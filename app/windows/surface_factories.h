#pragma once

#include "ui/kestro_services.h"
#include "ui/surface_actions.h"

#include <functional>

class QWidget;

namespace kestro {

/// Creates the content of each window as a child of `parent`, which it fills. Called when the window is first
/// shown.
struct SurfaceFactories {
    std::function<QWidget*(const KestroServices&, const PopoverActions&, QWidget* parent)> popover;
    std::function<QWidget*(const KestroServices&, const DashboardActions&, QWidget* parent)> dashboard;
    std::function<QWidget*(const KestroServices&, const SettingsActions&, QWidget* parent)> settings;
};

/// The application's real views.
SurfaceFactories kestroSurfaces();

}  // namespace kestro
