#pragma once

#include "ui/controls/while_on_screen.h"
#include "ui/decorations/glass_surface.h"
#include "ui/kestro_services.h"
#include "ui/menus/menu_entry.h"
#include "ui/surface_actions.h"

#include <vector>

namespace kestro {

class Button;
class LoadBar;
class MenuButton;
class ReadoutLine;

/// The quick-glance panel under the status item: current telemetry in one dense column, the fan profile, the
/// keep-awake state, and buttons for dashboard, settings and quit. 330 × 325 points, without scrolling. It stores
/// no state: each published value that changes repaints its own rectangle, and a hidden view does no work. Main
/// thread.
class MenuBarPopoverView : public GlassSurface {
public:
    MenuBarPopoverView(const KestroServices& services, PopoverActions actions, QWidget* parent = nullptr);
    ~MenuBarPopoverView() override;

    QSize sizeHint() const override;

protected:
    std::optional<PlacedHalftoneField> halftone() const override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildHeader();
    void buildCompute();
    void buildMemory();
    void buildCooling();
    void buildInputOutput();
    void buildPower();
    void buildFooter();
    void subscribe();

    void showEverything();
    void showCompute();
    void showMemory();
    void showFans();
    void layOutFans(std::size_t fanCount);
    void showThermals();
    void showProfile();
    void showNetwork();
    void showDisk();
    void showPower();
    void showKeepAwake();

    Menu profileMenu() const;

    KestroServices services_;
    PopoverActions actions_;

    ReadoutLine* total_ = nullptr;
    ReadoutLine* firstCluster_ = nullptr;
    ReadoutLine* secondCluster_ = nullptr;
    LoadBar* firstBar_ = nullptr;
    LoadBar* secondBar_ = nullptr;
    ReadoutLine* memory_ = nullptr;
    ReadoutLine* memoryAmounts_ = nullptr;
    ReadoutLine* coolingHeading_ = nullptr;
    std::vector<ReadoutLine*> fanLines_;
    std::optional<std::size_t> laidOutFans_;
    ReadoutLine* peak_ = nullptr;
    MenuButton* profile_ = nullptr;
    ReadoutLine* download_ = nullptr;
    ReadoutLine* upload_ = nullptr;
    ReadoutLine* freeSpace_ = nullptr;
    ReadoutLine* battery_ = nullptr;
    Button* keepAwake_ = nullptr;
    WhileOnScreen onScreen_{*this, [this] { showEverything(); }};
};

}  // namespace kestro
