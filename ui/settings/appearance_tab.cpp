#include "ui/settings/appearance_tab.h"

#include "ui/controls/composition.h"
#include "ui/controls/exclusive_group.h"
#include "ui/controls/option_tile.h"
#include "ui/controls/swatch.h"
#include "ui/decorations/halftone_fields.h"
#include "ui/settings/glass_sample.h"
#include "ui/settings/settings_parts.h"

#include <QPainter>

namespace kestro {

namespace {

constexpr int tileGap = 12;
constexpr int intensityLabelWidth = 150;

}  // namespace

AppearanceTab::AppearanceTab(const KestroServices& services) : SettingsPane(services) {
    add(settings_parts::group("STUDIO COLOR PALETTE", paletteCard()));
    add(settings_parts::group("PROCESS-INK HALFTONE FIELD", inkCard()));
    add(settings_parts::group("OPTICAL GLASS & BLUR FADES", glassCard()));
}

QWidget* AppearanceTab::paletteCard() {
    constexpr int height = 92;
    Setting<ThemePalette>& setting = services().settings.themePalette;
    QWidget* content = row(Insets{settings_parts::rowInset, 0, settings_parts::rowInset, 0}).release();
    auto* layout = static_cast<QHBoxLayout*>(content->layout());
    std::vector<Swatch*> swatches;
    for (const ThemePalette palette : allCases<ThemePalette>()) {
        auto* swatch = new Swatch(Words(rawValue(palette)), primaryColor(palette));
        swatch->onClick([&setting, palette] { setting.set(palette); });
        layout->addWidget(swatch, 1, Qt::AlignVCenter);
        swatches.push_back(swatch);
    }
    content->setFixedHeight(height);
    auto* options = new ExclusiveGroup({swatches.begin(), swatches.end()}, content);
    follow([options, &setting] { options->setChosen(static_cast<int>(setting.get())); }, setting);
    return new Card(content, nullptr);
}

template <ClosedEnumeration E>
QWidget* AppearanceTab::tiles(const Words& name, int height, Setting<E>& setting,
                              std::function<void(QPainter&, const QRectF&, E)> paint,
                              std::vector<OptionTile*>& made) {
    QWidget* line = row(Spacing(tileGap)).release();
    auto* layout = static_cast<QHBoxLayout*>(line->layout());
    for (const E value : allCases<E>()) {
        auto* tile =
            new OptionTile(Words(rawValue(value)), height,
                           [paint, value](QPainter& painter, const QRectF& area) { paint(painter, area, value); });
        tile->onClick([&setting, value] { setting.set(value); });
        layout->addWidget(tile, 1);
        made.push_back(tile);
    }
    auto* options = new ExclusiveGroup({made.begin(), made.end()}, line);
    follow([options, &setting] { options->setChosen(static_cast<int>(setting.get())); }, setting);
    return column(Insets{settings_parts::rowInset, 9, settings_parts::rowInset, 6}, Spacing(9),
                  text(name).style(text_styles::settingTitle), line)
        .release();
}

QWidget* AppearanceTab::inkCard() {
    UserSettings& settings = services().settings;
    QWidget* intensity = settings_parts::labelledRow("Dot Intensity", intensityLabelWidth,
                                                     choice("Dot Intensity", 28, settings.halftoneIntensity), 48);
    std::vector<OptionTile*> made;
    QWidget* patterns = tiles<HalftonePatternStyle>(
        "Geometric Distribution Pattern", 86, settings.halftonePattern,
        [&settings](QPainter& painter, const QRectF& area, HalftonePatternStyle pattern) {
            const PlacedHalftoneField placed = tileHalftone(pattern, area.size());
            placed.field.paint(painter, placed.area, settings.halftoneIntensity.get());
        },
        made);
    follow(
        [made] {
            for (OptionTile* tile : made) {
                tile->update();
            }
        },
        settings.halftoneIntensity);
    return new settings_parts::RowCard({intensity, patterns});
}

QWidget* AppearanceTab::glassCard() {
    UserSettings& settings = services().settings;
    SettingRow* fade = switchRow("Progressive Edge Blur Fades", 50, settings.progressiveBlurFade);
    fade->setDescription(QStringLiteral(
        "Softens window and popover edges with a variable gradient rolloff into desktop wallpaper"));
    std::vector<OptionTile*> made;
    QWidget* materials = tiles<GlassMaterialStyle>(
        "Glass Vibrancy:", 64, settings.glassMaterial,
        [&settings](QPainter& painter, const QRectF& area, GlassMaterialStyle style) {
            paintGlassSample(painter, area, style, settings.progressiveBlurFade.get());
        },
        made);
    follow(
        [made] {
            for (OptionTile* tile : made) {
                tile->update();
            }
        },
        settings.progressiveBlurFade);
    return new settings_parts::RowCard({fade, materials});
}

}  // namespace kestro
