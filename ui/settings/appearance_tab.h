#pragma once

#include "ui/settings/settings_pane.h"

#include <functional>
#include <vector>

class QPainter;
class QRectF;

namespace kestro {

class OptionTile;

/// The palette, the printed ink and the glass.
class AppearanceTab : public SettingsPane {
    Q_OBJECT

public:
    explicit AppearanceTab(const KestroServices& services);

private:
    QWidget* paletteCard();
    QWidget* inkCard();
    QWidget* glassCard();

    /// Tiles side by side under their heading, one per case, bound to `setting`. `paint` draws a case's preview.
    template <ClosedEnumeration E>
    QWidget* tiles(const Words& name, int height, Setting<E>& setting,
                   std::function<void(QPainter&, const QRectF&, E)> paint, std::vector<OptionTile*>& made);
};

}  // namespace kestro
