#pragma once

#include "tests/support/simulated_services.h"
#include "tests/ui/controls/view_test.h"
#include "ui/controls/button.h"
#include "ui/controls/segmented_choice.h"
#include "ui/controls/setting_row.h"
#include "ui/controls/slider.h"
#include "ui/controls/text_label.h"
#include "ui/controls/toggle_switch.h"
#include "ui/settings/settings_view.h"

#include <array>
#include <memory>
#include <stdexcept>

namespace kestro {

/// Fixture for the settings window's content on a frozen simulated machine.
class SettingsViewFixture : public testing::Test {
protected:
    SettingsViewFixture() { motion::setReduced(true); }

    ~SettingsViewFixture() override {
        view_.reset();
        KestroTheme::bind(nullptr);
        motion::setReduced(false);
    }

    template <typename Arrange>
    void open(SettingsTab tab, Arrange arrange) {
        machine_ = std::make_unique<SimulatedServices>([&arrange](SimulatedMac& mac) {
            mac.freeze();
            arrange(mac);
        });
        KestroTheme::bind(&settings());
        machine_->settle();
        settings().selectedSettingsTab.set(tab);
        view_ = std::make_unique<SettingsView>(machine_->services(), SettingsActions{[this] { ++closed_; }});
        view_->show();
        QApplication::processEvents();
    }

    void open(SettingsTab tab) {
        open(tab, [](SimulatedMac&) {});
    }

    UserSettings& settings() { return machine_->settings(); }
    FanControlManager& fans() { return machine_->fanManager(); }
    SimulatedUserDefaults& stored() { return machine_->mac.userDefaults; }

    /// The settings as the program would read them at its next start.
    UserSettings& restarted() {
        restarted_ = std::make_unique<UserSettings>(stored());
        return *restarted_;
    }

    /// The visible control of this type that `matches`; throws if there is none.
    template <typename W, typename Matches>
    W& find(Matches matches, const QString& what) {
        for (W* widget : view_->findChildren<W*>()) {
            if (widget->isVisible() && matches(*widget)) {
                return *widget;
            }
        }
        throw std::runtime_error("no such control: " + what.toStdString());
    }

    template <typename W>
    W& named(const char* name) {
        const QString wanted = QString::fromUtf8(name);
        return find<W>([&wanted](const W& widget) { return widget.accessibleInfo().name == wanted; }, wanted);
    }

    SettingRow& row(const char* title) { return named<SettingRow>(title); }
    SegmentedChoice& segments(const char* name) { return named<SegmentedChoice>(name); }
    Slider& slider(const char* name) { return named<Slider>(name); }
    Button& button(const char* text) { return named<Button>(text); }

    bool shows(const char* text) {
        const QString wanted = QString::fromUtf8(text);
        for (const TextLabel* label : view_->findChildren<TextLabel*>()) {
            if (label->isVisible() && label->text() == wanted) {
                return true;
            }
        }
        return false;
    }

    static void click(QWidget& widget) {
        const QPointF middle(widget.width() / 2.0, widget.height() / 2.0);
        send(widget, QEvent::MouseButtonPress, middle, Qt::LeftButton);
        send(widget, QEvent::MouseButtonRelease, middle, Qt::NoButton);
    }

    /// Clicks the segment at `index` in a choice of `count` segments.
    static void clickSegment(SegmentedChoice& choice, int index, int count) {
        const QPointF at = segmentAreas(QSizeF(choice.size()), count)[static_cast<std::size_t>(index)].center();
        send(choice, QEvent::MouseButtonPress, at, Qt::LeftButton);
        send(choice, QEvent::MouseButtonRelease, at, Qt::NoButton);
    }

    static void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(&widget, &down);
        QKeyEvent up(QEvent::KeyRelease, key, modifiers);
        QApplication::sendEvent(&widget, &up);
    }

    static void send(QWidget& widget, QEvent::Type type, const QPointF& position, Qt::MouseButtons held) {
        QMouseEvent event(type, position, widget.mapToGlobal(position), Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }

    std::unique_ptr<SimulatedServices> machine_;
    std::unique_ptr<UserSettings> restarted_;
    std::unique_ptr<SettingsView> view_;
    int closed_ = 0;
};

}  // namespace kestro
