#pragma once

#include "core/model/fan_curve.h"
#include "ui/settings/settings_pane.h"

#include <vector>

namespace kestro {

class Button;
class TextLabel;

/// The fans, the cooling profile, and the studio that edits the fan curves.
class CoolingTab : public SettingsPane {
    Q_OBJECT

public:
    explicit CoolingTab(const KestroServices& services);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    struct FanRow {
        QWidget* widget = nullptr;
        TextLabel* name = nullptr;
        TextLabel* speed = nullptr;
        TextLabel* limit = nullptr;
    };

    QWidget* hardwareCard();
    FanRow fanRow() const;
    void showHardware();
    void showFans();
    QWidget* profileButtons();
    QWidget* profileNote();

    /// Moves the focus from the note's button, which is about to be hidden, to the chosen profile.
    void moveFocusFromNote();

    /// Changes the profile from the top of the tab, where the note may go at once.
    void chooseProfile(FanProfile profile);

    TextLabel* hardware_ = nullptr;
    TextLabel* hardwareLine_ = nullptr;
    QWidget* fanList_ = nullptr;
    std::vector<FanRow> fanRows_;
    QWidget* note_ = nullptr;
    Button* engage_ = nullptr;
    Button* custom_ = nullptr;
};

}  // namespace kestro
