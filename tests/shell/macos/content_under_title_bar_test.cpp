#include "shell/macos/content_under_title_bar.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace kestro {
namespace {

bool staysBelowTitleBar(const QWidget& widget) {
    return widget.testAttribute(Qt::WA_ContentsMarginsRespectsSafeArea);
}

/// As most versions of the toolkit create widgets.
void keepBelowTitleBar(QWidget& widget) {
    widget.setAttribute(Qt::WA_ContentsMarginsRespectsSafeArea);
}

TEST(ContentUnderTitleBar, CoversWindowsAndTheirWidgets) {
    const ContentUnderTitleBar area;
    QWidget window;
    QWidget inner(&window);
    keepBelowTitleBar(window);
    keepBelowTitleBar(inner);

    window.ensurePolished();
    inner.ensurePolished();

    EXPECT_FALSE(staysBelowTitleBar(window));
    EXPECT_FALSE(staysBelowTitleBar(inner));
}

TEST(ContentUnderTitleBar, EndsWithItsObject) {
    { const ContentUnderTitleBar area; }
    QWidget window;
    keepBelowTitleBar(window);

    window.ensurePolished();

    EXPECT_TRUE(staysBelowTitleBar(window));
}

}  // namespace
}  // namespace kestro
