#pragma once

#include "core/base/enumeration.h"
#include "core/platform/user_defaults.h"
#include "core/settings/user_settings.h"
#include "tests/ui/settings/settings_view_test.h"
#include "ui/controls/segmented_choice.h"
#include "ui/controls/setting_row.h"
#include "ui/controls/slider.h"

#include <QEvent>
#include <QPointF>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// Operates every control by mouse and by keyboard and checks its setting, the stored preference, and that the
/// control follows changes made elsewhere.
class SettingsBindingsTest : public SettingsViewFixture {
protected:
    PreferenceValue kept(std::string_view key) { return stored().values.at(std::string(key)); }

    template <ClosedEnumeration E>
    void expectKept(const Setting<E>& setting, E value) {
        EXPECT_EQ(setting.get(), value) << rawValue(value);
        const std::string json = '"' + std::string(rawValue(value)) + '"';
        EXPECT_EQ(kept(setting.key()), PreferenceValue(PreferenceData(json.begin(), json.end())))
            << rawValue(value);
    }

    void checkSwitch(const char* title, Setting<bool>& setting) {
        SettingRow& control = row(title);
        const auto check = [&](bool wanted) {
            EXPECT_EQ(setting.get(), wanted) << title;
            EXPECT_EQ(kept(setting.key()), PreferenceValue(wanted)) << title;
            EXPECT_EQ(control.isOn(), wanted) << title;
        };
        const bool before = setting.get();
        click(control);
        check(!before);
        press(control, Qt::Key_Space);
        check(before);
        setting.set(!before);
        EXPECT_EQ(control.isOn(), !before) << title;
    }

    template <ClosedEnumeration E>
    void checkSegments(const char* name, Setting<E>& setting) {
        SegmentedChoice& control = segments(name);
        const auto& cases = allCases<E>();
        const int count = static_cast<int>(cases.size());
        setting.set(cases.back());
        for (int i = 0; i < count; ++i) {
            clickSegment(control, i, count);
            expectKept(setting, cases[static_cast<std::size_t>(i)]);
        }
        press(control, Qt::Key_Home);
        expectKept(setting, cases.front());
        press(control, Qt::Key_Right);
        expectKept(setting, cases[1]);
        press(control, Qt::Key_End);
        expectKept(setting, cases.back());
        press(control, Qt::Key_Left);
        expectKept(setting, cases[cases.size() - 2]);
        for (const E value : cases) {
            setting.set(value);
            EXPECT_EQ(control.chosen(), static_cast<int>(value)) << rawValue(value);
        }
    }

    /// Checks mutually exclusive controls, named after the cases of their setting.
    template <typename W, ClosedEnumeration E>
    void checkOptions(Setting<E>& setting, const std::vector<E>& shown, const std::function<void(E)>& assign) {
        const auto control = [this](E value) -> W& { return named<W>(std::string(rawValue(value)).c_str()); };
        assign(shown.back());
        for (const E value : shown) {
            click(control(value));
            expectKept(setting, value);
        }
        for (const E value : shown) {
            press(control(value), Qt::Key_Space);
            expectKept(setting, value);
        }
        press(control(shown.back()), Qt::Key_Left);
        expectKept(setting, shown[shown.size() - 2]);
        press(control(shown[shown.size() - 2]), Qt::Key_Down);
        expectKept(setting, shown.back());
        for (const E chosen : shown) {
            assign(chosen);
            for (const E value : shown) {
                EXPECT_EQ(control(value).accessibleInfo().checked, value == chosen) << rawValue(value);
            }
        }
    }

    template <typename W, ClosedEnumeration E>
    void checkOptions(Setting<E>& setting) {
        const auto& cases = allCases<E>();
        checkOptions<W, E>(setting, {cases.begin(), cases.end()}, [&setting](E value) { setting.set(value); });
    }

    void checkSlider(const char* name, const SliderRange& range, const std::function<double()>& value) {
        Slider& control = slider(name);
        const double y = control.height() / 2.0;
        EXPECT_EQ(control.range(), range) << name;
        send(control, QEvent::MouseButtonPress, QPointF(control.width() - 1, y), Qt::LeftButton);
        EXPECT_EQ(value(), range.maximum) << name;
        send(control, QEvent::MouseMove, QPointF(control.width() / 2.0, y), Qt::LeftButton);
        EXPECT_EQ(value(), range.nearest((range.minimum + range.maximum) / 2)) << name;
        send(control, QEvent::MouseMove, QPointF(-40, y), Qt::LeftButton);
        send(control, QEvent::MouseButtonRelease, QPointF(-40, y), Qt::NoButton);
        EXPECT_EQ(value(), range.minimum) << name;
        press(control, Qt::Key_Right);
        EXPECT_EQ(value(), range.minimum + range.step) << name;
        press(control, Qt::Key_PageUp);
        EXPECT_EQ(value(), range.minimum + 6 * range.step) << name;
        press(control, Qt::Key_PageDown);
        press(control, Qt::Key_Left);
        EXPECT_EQ(value(), range.minimum) << name;
        press(control, Qt::Key_End);
        EXPECT_EQ(value(), range.maximum) << name;
    }
};

}  // namespace kestro
