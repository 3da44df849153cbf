#pragma once

#include "ui/settings/settings_pane.h"

namespace kestro {

class Button;
class TextLabel;

/// The keep-awake state, its scope, its duration, and the battery level that ends it.
class KeepAwakeTab : public SettingsPane {
    Q_OBJECT

public:
    explicit KeepAwakeTab(const KestroServices& services);

private:
    QWidget* statusCard();
    QWidget* scopeCard();
    QWidget* batteryCard();
    void showStatus();

    TextLabel* heading_ = nullptr;
    TextLabel* line_ = nullptr;
    TextLabel* scope_ = nullptr;
    QWidget* cup_ = nullptr;
    Button* button_ = nullptr;
};

}  // namespace kestro
