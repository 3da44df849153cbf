#include "shell/linux/notifier/menu_tree.h"

#include <gtest/gtest.h>

#include <climits>

namespace kestro {
namespace {

MenuEntry entry(const char* title, bool isChecked = false) {
    MenuEntry made;
    made.title = QString::fromUtf8(title);
    made.isChecked = isChecked;
    return made;
}

QVariant property(const MenuTree& tree, std::size_t index, const char* name) {
    return tree.find(tree.find(0)->children.at(index))->properties.value(QString::fromLatin1(name));
}

TEST(MenuTree, ShowsUnderscoresAndAmpersandsLiterally) {
    EXPECT_EQ(menuLabel(QStringLiteral("a_b & c")), QStringLiteral("a__b & c"));
}

TEST(MenuTree, WritesShortcutsAsModifiersAndKey) {
    using Chords = QList<QStringList>;
    EXPECT_EQ(menuShortcut(QStringLiteral("Ctrl+D")), Chords({{QStringLiteral("Control"), QStringLiteral("d")}}));
    EXPECT_EQ(menuShortcut(QStringLiteral("Ctrl+Shift+F")),
              Chords({{QStringLiteral("Control"), QStringLiteral("Shift"), QStringLiteral("f")}}));
    EXPECT_EQ(menuShortcut(QStringLiteral("Ctrl+,")), Chords({{QStringLiteral("Control"), QStringLiteral(",")}}));
    EXPECT_EQ(menuShortcut(QStringLiteral("Meta++")), Chords({{QStringLiteral("Super"), QStringLiteral("plus")}}));
    EXPECT_EQ(menuShortcut(QStringLiteral("F11")), Chords({{QStringLiteral("F11")}}));
    EXPECT_TRUE(menuShortcut(QString()).isEmpty());
    EXPECT_TRUE(menuShortcut(QStringLiteral("Ctrl+Nonsense")).isEmpty());
}

TEST(MenuTree, DescribesSeparatorsHeadersAndSubmenus) {
    MenuTree tree;
    MenuEntry parent = entry("Parent");
    parent.submenu = {entry("Child")};

    tree.replace({MenuEntry::header(QStringLiteral("Head")), MenuEntry::separator(), parent});

    EXPECT_EQ(property(tree, 0, "enabled"), QVariant(false));
    EXPECT_EQ(property(tree, 1, "type").toString(), QStringLiteral("separator"));
    EXPECT_FALSE(property(tree, 1, "label").isValid());
    EXPECT_EQ(property(tree, 2, "children-display").toString(), QStringLiteral("submenu"));
    EXPECT_FALSE(property(tree, 2, "enabled").isValid());
}

TEST(MenuTree, GivesCheckMarksOnlyToTheGroupOfACheckedEntry) {
    MenuTree tree;

    tree.replace({entry("alone"), MenuEntry::separator(), entry("one"), entry("two", true),
                  MenuEntry::header(QStringLiteral("Head")), entry("other")});

    EXPECT_FALSE(property(tree, 0, "toggle-type").isValid());
    EXPECT_EQ(property(tree, 2, "toggle-type").toString(), QStringLiteral("checkmark"));
    EXPECT_EQ(property(tree, 2, "toggle-state").toInt(), 0);
    EXPECT_EQ(property(tree, 3, "toggle-state").toInt(), 1);
    EXPECT_FALSE(property(tree, 5, "toggle-type").isValid());
}

TEST(MenuTree, KeepsIdentifiersWhileTheShapeIsUnchanged) {
    MenuTree tree;
    tree.replace({entry("one", true), entry("two")});
    const std::vector<int> before = tree.identifiers();
    const uint revision = tree.revision();

    const MenuChange change = tree.replace({entry("one"), entry("2", true)});

    EXPECT_FALSE(change.hasNewLayout);
    EXPECT_EQ(tree.identifiers(), before);
    EXPECT_EQ(tree.revision(), revision);
    ASSERT_EQ(change.updated.size(), 2);
    EXPECT_EQ(change.updated.at(0).properties, QVariantMap({{QStringLiteral("toggle-state"), 0}}));
    EXPECT_EQ(change.updated.at(1).properties.value(QStringLiteral("label")).toString(), QStringLiteral("2"));
}

TEST(MenuTree, ReportsRemovedProperties) {
    MenuTree tree;
    tree.replace({MenuEntry::header(QStringLiteral("one"))});

    const MenuChange change = tree.replace({entry("one")});

    ASSERT_EQ(change.removed.size(), 1);
    EXPECT_EQ(change.removed.at(0).names, QStringList{QStringLiteral("enabled")});
    EXPECT_TRUE(change.updated.isEmpty());
}

TEST(MenuTree, ReportsNothingForAnEqualMenu) {
    MenuTree tree;
    MenuEntry quit = entry("Quit");
    quit.shortcut = QStringLiteral("Ctrl+Q");
    tree.replace({quit});

    const MenuChange change = tree.replace({quit});

    EXPECT_FALSE(change.hasNewLayout);
    EXPECT_TRUE(change.updated.isEmpty());
    EXPECT_TRUE(change.removed.isEmpty());
}

TEST(MenuTree, NeverReusesAnIdentifierInAnotherLayout) {
    MenuTree tree;
    tree.replace({entry("one"), entry("two")});
    const std::vector<int> before = tree.find(0)->children;

    const MenuChange change = tree.replace({entry("one"), entry("two"), entry("three")});

    EXPECT_TRUE(change.hasNewLayout);
    for (const int id : before) {
        EXPECT_EQ(tree.find(id), nullptr);
    }
}

TEST(MenuTree, AdoptsTheNewActionsOnEveryReplacement) {
    MenuTree tree;
    int called = 0;
    MenuEntry act = entry("act");
    act.action = [&] { called = 1; };
    tree.replace({act});
    act.action = [&] { called = 2; };

    tree.replace({act});
    tree.find(tree.find(0)->children.at(0))->action();

    EXPECT_EQ(called, 2);
}

TEST(MenuTree, LimitsTheLayoutToTheRequestedDepth) {
    MenuTree tree;
    MenuEntry parent = entry("Parent");
    parent.submenu = {entry("Child")};
    tree.replace({parent});

    const auto rootOnly = tree.layout(0, 0, {});
    const auto oneLevel = tree.layout(0, 1, {});
    const auto everything = tree.layout(0, -1, {});

    EXPECT_TRUE(rootOnly->children.isEmpty());
    EXPECT_TRUE(oneLevel->children.at(0).variant().value<MenuLayoutNode>().children.isEmpty());
    EXPECT_EQ(everything->children.at(0).variant().value<MenuLayoutNode>().children.size(), 1);
    EXPECT_FALSE(tree.layout(INT_MAX, -1, {}).has_value());
    EXPECT_FALSE(tree.layout(INT_MIN, INT_MIN, {}).has_value());
}

TEST(MenuTree, SelectsTheNamedProperties) {
    const QVariantMap all{{QStringLiteral("label"), QStringLiteral("x")}, {QStringLiteral("enabled"), false}};

    EXPECT_EQ(MenuTree::selected(all, {}), all);
    EXPECT_EQ(MenuTree::selected(all, {QStringLiteral("enabled"), QStringLiteral("unknown")}),
              QVariantMap({{QStringLiteral("enabled"), false}}));
}

}  // namespace
}  // namespace kestro
