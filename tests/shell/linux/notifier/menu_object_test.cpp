#include "shell/linux/notifier/menu_object.h"

#include "tests/shell/linux/notifier/sni_fixture.h"

#include <gtest/gtest.h>

#include <climits>

namespace kestro {
namespace {

class MenuObjectTest : public SniFixture {
protected:
    MenuObjectTest() {
        startMonitors();
        item = makeItem({{}, [this] {
                             ++built;
                             return menu();
                         }});
    }

    Menu menu() {
        MenuEntry submenu;
        submenu.title = QStringLiteral("Keep_Awake");
        for (int index = 0; index < 2; ++index) {
            MenuEntry choice;
            choice.title = index == 0 ? QStringLiteral("15 Minutes") : QStringLiteral("30 Minutes");
            choice.isChecked = index == chosen;
            choice.action = [this, index] { chosen = index; };
            submenu.submenu.push_back(choice);
        }
        MenuEntry quit;
        quit.title = QStringLiteral("Quit");
        quit.shortcut = QStringLiteral("Ctrl+Q");
        quit.action = [this] { ++quits; };
        MenuEntry header = MenuEntry::header(QStringLiteral("Kestro Telemetry"));
        header.action = [this] { ++quits; };
        Menu entries{header, MenuEntry::separator(), submenu, quit};
        if (hasNews) {
            entries.push_back(MenuEntry::header(QStringLiteral("News")));
        }
        return entries;
    }

    MenuLayoutNode layout(int parent = 0, int depth = -1) {
        const QDBusMessage reply = menuCall(*item, "GetLayout", {parent, depth, QStringList()});
        EXPECT_EQ(reply.signature(), QStringLiteral("u(ia{sv}av)"));
        return qdbus_cast<MenuLayoutNode>(reply.arguments().value(1));
    }

    static MenuLayoutNode child(const MenuLayoutNode& node, int index) {
        return qdbus_cast<MenuLayoutNode>(node.children.at(index).variant());
    }

    QDBusMessage event(int id, const char* name) {
        return menuCall(*item, "Event",
                        {id, QString::fromLatin1(name), QVariant::fromValue(QDBusVariant(QString())), 0U});
    }

    int built = 0;
    int quits = 0;
    int chosen = 0;
    bool hasNews = false;
    std::unique_ptr<SniStatusItem> item;
};

QVariantList ids(std::initializer_list<int> values) {
    return {QVariant::fromValue(QList<int>(values))};
}

TEST_F(MenuObjectTest, ShowsTheWholeMenu) {
    const MenuLayoutNode root = layout();

    EXPECT_EQ(root.properties.value(QStringLiteral("children-display")).toString(), QStringLiteral("submenu"));
    ASSERT_EQ(root.children.size(), 4);
    EXPECT_EQ(child(root, 0).properties.value(QStringLiteral("label")).toString(),
              QStringLiteral("Kestro Telemetry"));
    EXPECT_EQ(child(root, 0).properties.value(QStringLiteral("enabled")), QVariant(false));
    EXPECT_EQ(child(root, 1).properties.value(QStringLiteral("type")).toString(), QStringLiteral("separator"));
    EXPECT_EQ(child(root, 2).properties.value(QStringLiteral("label")).toString(), QStringLiteral("Keep__Awake"));
    ASSERT_EQ(child(root, 2).children.size(), 2);
    EXPECT_EQ(child(child(root, 2), 0).properties.value(QStringLiteral("toggle-state")).toInt(), 1);
    EXPECT_EQ(child(child(root, 2), 1).properties.value(QStringLiteral("toggle-state")).toInt(), 0);
    EXPECT_EQ(qdbus_cast<QList<QStringList>>(child(root, 3).properties.value(QStringLiteral("shortcut"))),
              QList<QStringList>({{QStringLiteral("Control"), QStringLiteral("q")}}));
}

TEST_F(MenuObjectTest, IsBuiltOnceForReadingAndRebuiltForEveryOpening) {
    layout();
    layout();
    EXPECT_EQ(built, 1);

    menuCall(*item, "AboutToShow", {0});
    menuCall(*item, "AboutToShow", {0});

    EXPECT_EQ(built, 3);
}

TEST_F(MenuObjectTest, IsRebuiltForHostsThatReportAnOpeningDifferently) {
    const int submenu = child(layout(), 2).id;

    menuCall(*item, "AboutToShow", {submenu});
    EXPECT_EQ(built, 2);

    event(0, "opened");
    EXPECT_TRUE(waitUntil([&] { return built == 3; }));
}

TEST_F(MenuObjectTest, RunsAChosenEntryAndShowsItsNewState) {
    const MenuLayoutNode root = layout();
    const int second = child(child(root, 2), 1).id;

    event(second, "clicked");
    ASSERT_TRUE(waitUntil([&] { return chosen == 1; }));
    const QDBusMessage reply = menuCall(*item, "AboutToShow", {0});

    EXPECT_FALSE(reply.arguments().at(0).toBool());
    EXPECT_EQ(child(child(layout(), 2), 1).properties.value(QStringLiteral("toggle-state")).toInt(), 1);
}

TEST_F(MenuObjectTest, IgnoresHoveringAndHeaders) {
    const MenuLayoutNode root = layout();

    EXPECT_EQ(event(child(root, 3).id, "hovered").type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(event(child(root, 0).id, "clicked").type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(event(0, "opened").type(), QDBusMessage::ReplyMessage);
    settle();

    EXPECT_EQ(quits, 0);
}

TEST_F(MenuObjectTest, HandlesGroupsOfEvents) {
    const int quit = child(layout(), 3).id;
    const MenuEvent known{quit, QStringLiteral("clicked"), QDBusVariant(0), 0};
    const MenuEvent unknown{INT_MAX, QStringLiteral("clicked"), QDBusVariant(0), 0};

    const QDBusMessage mixed =
        menuCall(*item, "EventGroup", {QVariant::fromValue(QList<MenuEvent>{unknown, known})});
    const QDBusMessage wrong = menuCall(*item, "EventGroup", {QVariant::fromValue(QList<MenuEvent>{unknown})});

    EXPECT_EQ(qdbus_cast<QList<int>>(mixed.arguments().value(0)), QList<int>{INT_MAX});
    EXPECT_EQ(wrong.type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(waitUntil([&] { return quits == 1; }));
}

TEST_F(MenuObjectTest, RunsEachEntryOnceHoweverOftenOneMessageClicksIt) {
    const MenuLayoutNode root = layout();
    const int quit = child(root, 3).id;
    const int second = child(child(root, 2), 1).id;
    QList<MenuEvent> clicks;
    for (int pair = 0; pair < 2048; ++pair) {
        clicks.append({quit, QStringLiteral("clicked"), QDBusVariant(0), 0});
        clicks.append({second, QStringLiteral("clicked"), QDBusVariant(0), 0});
    }

    EXPECT_EQ(menuCall(*item, "EventGroup", {QVariant::fromValue(clicks)}).type(), QDBusMessage::ReplyMessage);

    ASSERT_TRUE(waitUntil([&] { return chosen == 1; }));
    settle();
    EXPECT_EQ(quits, 1);
}

TEST_F(MenuObjectTest, RebuildsOnceForManyOpeningsInOneMessage) {
    layout();
    const QList<MenuEvent> openings(4096, {0, QStringLiteral("opened"), QDBusVariant(0), 0});

    menuCall(*item, "EventGroup", {QVariant::fromValue(openings)});

    ASSERT_TRUE(waitUntil([&] { return built == 2; }));
    event(child(layout(), 3).id, "clicked");
    ASSERT_TRUE(waitUntil([&] { return quits == 1; }));
    EXPECT_EQ(built, 2);
}

TEST_F(MenuObjectTest, HandlesGroupsOfOpenings) {
    layout();

    const QDBusMessage reply = menuCall(*item, "AboutToShowGroup", ids({0, INT_MIN}));

    EXPECT_EQ(reply.signature(), QStringLiteral("aiai"));
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(1)), QList<int>{INT_MIN});
    EXPECT_EQ(built, 2);
}

TEST_F(MenuObjectTest, IsRebuiltForAGroupThatNamesOnlyASubmenu) {
    const int submenu = child(layout(), 2).id;
    hasNews = true;

    const QDBusMessage reply = menuCall(*item, "AboutToShowGroup", ids({submenu, INT_MIN}));

    EXPECT_EQ(built, 2);
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{submenu});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(1)), QList<int>{INT_MIN});
    EXPECT_EQ(layout().children.size(), 5);
}

TEST_F(MenuObjectTest, IsNotBuiltForAGroupOfUnknownEntries) {
    layout();

    menuCall(*item, "AboutToShowGroup", ids({INT_MIN, INT_MAX}));

    EXPECT_EQ(built, 1);
}

TEST_F(MenuObjectTest, ReturnsPropertiesSinglyAndInGroups) {
    const int quit = child(layout(), 3).id;

    const QDBusMessage single = menuCall(*item, "GetProperty", {quit, QStringLiteral("label")});
    const QDBusMessage group =
        menuCall(*item, "GetGroupProperties",
                 {QVariant::fromValue(QList<int>{quit, INT_MAX}), QStringList{QStringLiteral("label")}});
    const QDBusMessage all =
        menuCall(*item, "GetGroupProperties", {QVariant::fromValue(QList<int>()), QStringList()});

    EXPECT_EQ(single.arguments().at(0).value<QDBusVariant>().variant().toString(), QStringLiteral("Quit"));
    const auto found = qdbus_cast<QList<MenuEntryProperties>>(group.arguments().value(0));
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.at(0).properties, QVariantMap({{QStringLiteral("label"), QStringLiteral("Quit")}}));
    EXPECT_EQ(qdbus_cast<QList<MenuEntryProperties>>(all.arguments().value(0)).size(), 7);
}

TEST_F(MenuObjectTest, ReturnsAnEntryAndAPropertyOnceHoweverOftenTheyAreNamed) {
    const int quit = child(layout(), 3).id;
    const QStringList names(4096, QStringLiteral("label"));

    const QDBusMessage reply =
        menuCall(*item, "GetGroupProperties", {QVariant::fromValue(QList<int>(4096, quit)), names});

    const auto found = qdbus_cast<QList<MenuEntryProperties>>(reply.arguments().value(0));
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.at(0).id, quit);
    EXPECT_EQ(found.at(0).properties, QVariantMap({{QStringLiteral("label"), QStringLiteral("Quit")}}));
}

TEST_F(MenuObjectTest, RefusesListsThatNoHostSends) {
    const QVariant many = QVariant::fromValue(QList<int>(4097, 0));
    const QStringList names(4097, QStringLiteral("label"));
    const QList<MenuEvent> events(4097, {0, QStringLiteral("hovered"), QDBusVariant(0), 0});

    for (const QDBusMessage& reply :
         {menuCall(*item, "GetGroupProperties", {many, QStringList()}),
          menuCall(*item, "GetGroupProperties", {QVariant::fromValue(QList<int>{0}), names}),
          menuCall(*item, "GetLayout", {0, -1, names}), menuCall(*item, "AboutToShowGroup", {many}),
          menuCall(*item, "EventGroup", {QVariant::fromValue(events)})}) {
        EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
    }
    EXPECT_EQ(built, 0);
}

TEST_F(MenuObjectTest, RejectsInvalidArguments) {
    const QString text = QStringLiteral("text");
    const QVariantList wrong[] = {{}, {text}, {1.5, 2}, {text, text, text}, {0, 0, 0, 0}};

    for (const char* method : {"GetLayout", "GetGroupProperties", "GetProperty", "Event", "EventGroup",
                               "AboutToShow", "AboutToShowGroup"}) {
        for (const QVariantList& arguments : wrong) {
            EXPECT_EQ(menuCall(*item, method, arguments).type(), QDBusMessage::ErrorMessage) << method;
        }
    }
    EXPECT_EQ(menuCall(*item, "GetLayout", {-7, 1, QStringList()}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(menuCall(*item, "GetProperty", {0, text}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(menuCall(*item, "AboutToShow", {INT_MAX}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(event(INT_MIN, "clicked").type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(menuCall(*item, "AboutToShowGroup", {QVariant::fromValue(QList<int>(100'000, 0))}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(built, 1);
}

TEST_F(MenuObjectTest, ServesItsOwnProperties) {
    const auto read = [&](const char* name) {
        return client.property(item->serviceName(), QStringLiteral("/MenuBar"),
                               QStringLiteral("com.canonical.dbusmenu"), QString::fromLatin1(name));
    };

    EXPECT_EQ(read("Version"), QVariant(3U));
    EXPECT_EQ(read("TextDirection").toString(), QStringLiteral("ltr"));
    EXPECT_EQ(read("Status").toString(), QStringLiteral("normal"));
    EXPECT_EQ(read("IconThemePath").toStringList(), QStringList());
}

}  // namespace
}  // namespace kestro
