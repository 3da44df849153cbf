#include "tests/ui/surfaces.h"
#include "ui/theme/motion.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <map>

namespace kestro {
namespace {

/// Everything that the user can change.
struct Choices {
    std::map<std::string, PreferenceValue, std::less<>> stored;
    FanProfile profile;
    bool isLinked;
    FanCurveConfig left;
    FanCurveConfig right;
    bool isAwake;
    SystemPowerMode mode;
    std::string asked;

    friend bool operator==(const Choices&, const Choices&) = default;
};

Choices choices(Surface& surface) {
    SimulatedServices& services = surface.services();
    return {services.mac.userDefaults.values,          services.fanManager().currentProfile.get(),
            services.fanManager().isLinked.get(),      services.fanManager().leftCurve.get(),
            services.fanManager().rightCurve.get(),    services.keepAwake().isActive.get(),
            services.powerManager().currentMode.get(), surface.asked()};
}

/// What has the keyboard: an open menu, or a control.
QWidget* focus() {
    QWidget* const menu = QApplication::activePopupWidget();
    return menu != nullptr ? menu : QApplication::focusWidget();
}

void pressSpace() {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (QWidget* const target = focus()) {
            QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
            QApplication::sendEvent(target, &event);
        }
    }
    QApplication::processEvents();
}

class SecondPressOfSpace : public testing::TestWithParam<std::pair<std::string, MakeSurface>> {
protected:
    SecondPressOfSpace() { motion::setReduced(true); }
    ~SecondPressOfSpace() override { motion::setReduced(false); }
};

/// Presses Space twice on each control, each time on a new surface.
TEST_P(SecondPressOfSpace, ChangesNothingWhereTheFirstMovedTheFocus) {
    const MakeSurface& make = GetParam().second;
    const std::size_t count = Surface(make).focusable().size();
    ASSERT_GT(count, 0U);
    for (std::size_t i = 0; i < count; ++i) {
        Surface surface(make);
        const std::vector<Control*> controls = surface.focusable();
        ASSERT_EQ(controls.size(), count);
        Control* const control = controls[i];
        const std::string name = control->accessibleInfo().name.toStdString();
        control->setFocus(Qt::TabFocusReason);
        ASSERT_EQ(focus(), control) << name;

        pressSpace();
        const QWidget* const focused = focus();
        EXPECT_NE(focused, nullptr) << name << " loses the focus";
        const Choices once = choices(surface);
        pressSpace();

        if (focused != control) {
            EXPECT_TRUE(choices(surface) == once) << name << " passes the focus to a control that acts";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EverySurface, SecondPressOfSpace, testing::ValuesIn(everySurface()),
                         [](const auto& test) { return "Surface" + std::to_string(test.index); });

}  // namespace
}  // namespace kestro
