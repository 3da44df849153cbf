#include "ui/controls/view_accessible.h"

#include "tests/ui/controls/view_test.h"

#include <QAccessible>

namespace kestro {
namespace {

using ViewAccessibleTest = ViewTest;

QAccessible::Role roleOf(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget)->role();
}

TEST_F(ViewAccessibleTest, ExposesWindowsAsWindowsAndNamedWidgetsAsGroups) {
    installViewAccessibility();
    QWidget window;
    window.setWindowTitle(QStringLiteral("Kestro"));
    QWidget named(&window);
    named.setAccessibleName(QStringLiteral("Cooling"));
    QWidget unnamed(&window);
    window.show();

    EXPECT_EQ(roleOf(window), QAccessible::Window);
    EXPECT_EQ(roleOf(named), QAccessible::Grouping);
    EXPECT_EQ(roleOf(unnamed), QAccessible::Client);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&window)->text(QAccessible::Name), QStringLiteral("Kestro"));
}

}  // namespace
}  // namespace kestro
