#pragma once

#include "core/model/settings_enumerations.h"
#include "ui/controls/transition.h"
#include "ui/decorations/glass_surface.h"
#include "ui/kestro_services.h"
#include "ui/surface_actions.h"

#include <array>
#include <optional>

namespace kestro {

class ScrollArea;
class TabStrip;

/// The content of the settings window: a header, a tab strip, and the selected tab, which scrolls below them. The
/// selected tab is itself a setting. A tab is created when first selected; tabs cross-fade. Control+Tab goes to
/// the next tab.
class SettingsView : public GlassSurface {
    Q_OBJECT

public:
    SettingsView(const KestroServices& services, const SettingsActions& actions, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {860, 750}; }

    /// The tab's content; null until the tab is first selected.
    QWidget* content(SettingsTab tab) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void makeHeader(const SettingsActions& actions);
    void showSelectedTab();
    void exchangeTabs(std::size_t coming);
    void showFade();
    void step(int distance);
    ScrollArea* makeTab(SettingsTab tab);

    KestroServices services_;
    QWidget* header_ = nullptr;
    TabStrip* strip_ = nullptr;
    std::array<ScrollArea*, EnumerationTable<SettingsTab>::rows.size()> areas_{};
    std::optional<std::size_t> shown_;
    std::optional<std::size_t> leaving_;  ///< the tab that is fading out
    Transition fade_{1, [this] { showFade(); }};
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
