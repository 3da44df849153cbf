#include "tests/ui/surfaces.h"
#include "ui/controls/view_accessible.h"

#include <QAccessible>

#include <gtest/gtest.h>

#include <set>

namespace kestro {
namespace {

class ScreenReader : public testing::TestWithParam<std::pair<std::string, MakeSurface>> {
protected:
    ScreenReader() { installViewAccessibility(); }

    /// Visits the elements that a screen reader finds, from the surface down.
    template <typename Visit>
    static void walk(QAccessibleInterface& element, const Visit& visit) {
        if (element.state().invisible) {
            return;
        }
        visit(element);
        for (int i = 0; i < element.childCount(); ++i) {
            if (QAccessibleInterface* child = element.child(i)) {
                walk(*child, visit);
            }
        }
    }

    static bool isContainer(const QAccessibleInterface& element) {
        const std::set containers{QAccessible::Client, QAccessible::Window, QAccessible::Grouping,
                                  QAccessible::ScrollBar, QAccessible::Pane};
        return containers.contains(element.role());
    }
};

TEST_P(ScreenReader, FindsANameForEveryElement) {
    Surface surface(GetParam().second);
    int elements = 0;

    walk(*QAccessible::queryAccessibleInterface(&surface.view()), [&](QAccessibleInterface& element) {
        if (!isContainer(element)) {
            ++elements;
            const auto* const object = element.object();
            EXPECT_FALSE(element.text(QAccessible::Name).isEmpty())
                << "role " << element.role() << ", "
                << (object != nullptr ? object->metaObject()->className() : "part");
        }
    });

    EXPECT_GT(elements, 5);
}

TEST_P(ScreenReader, ReachesAndOperatesEveryControl) {
    Surface surface(GetParam().second);
    std::set<const QObject*> operable;

    walk(*QAccessible::queryAccessibleInterface(&surface.view()), [&](QAccessibleInterface& element) {
        auto* const actions = element.actionInterface();
        const bool isPressed =
            actions != nullptr && actions->actionNames().contains(QAccessibleActionInterface::pressAction());
        if (isPressed || element.valueInterface() != nullptr) {
            // The parts of a control, such as segments, are operated one by one.
            const bool isPart = element.object() == nullptr;
            operable.insert(isPart ? element.parent()->object() : element.object());
        }
    });

    for (const Control* control : surface.focusable()) {
        EXPECT_TRUE(operable.contains(control)) << control->accessibleInfo().name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(EverySurface, ScreenReader, testing::ValuesIn(everySurface()),
                         [](const auto& test) { return "Surface" + std::to_string(test.index); });

}  // namespace
}  // namespace kestro
