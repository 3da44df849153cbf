#pragma once

#include "ui/settings/settings_pane.h"

namespace kestro {

/// What the dashboard shows, and how its window behaves.
class DashboardTab : public SettingsPane {
    Q_OBJECT

public:
    explicit DashboardTab(const KestroServices& services);

private:
    QWidget* columnsCard();
    QWidget* activityCard();
    SegmentedChoice* processCountChoice();
};

}  // namespace kestro
