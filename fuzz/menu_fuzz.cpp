#include "fuzz/bus_loopback.h"
#include "fuzz/generated_values.h"
#include "fuzz/requirement.h"
#include "shell/linux/notifier/menu_object.h"

#include <QDBusVariant>

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace kestro {
namespace {

struct Method {
    const char* name;
    const char* results;
    QVariantList (*arguments)(GeneratedValues&);
};

QVariant numbers(GeneratedValues& values) {
    return QVariant::fromValue(values.list<int>([&values] { return values.identifier(); }));
}

QVariant texts(GeneratedValues& values) {
    return QStringList(values.list<QString>([&values] { return values.text(); }));
}

MenuEvent event(GeneratedValues& values) {
    return {values.identifier(), values.text(), QDBusVariant(values.any()), static_cast<uint>(values.number())};
}

const Method methods[] = {
    {"GetLayout", "u(ia{sv}av)",
     [](GeneratedValues& values) {
         return QVariantList{values.identifier(), values.identifier(), texts(values)};
     }},
    {"GetGroupProperties", "a(ia{sv})",
     [](GeneratedValues& values) {
         return QVariantList{numbers(values), texts(values)};
     }},
    {"GetProperty", "v",
     [](GeneratedValues& values) {
         return QVariantList{values.identifier(), values.text()};
     }},
    {"Event", "",
     [](GeneratedValues& values) {
         const MenuEvent made = event(values);
         return QVariantList{made.id, made.name, QVariant::fromValue(made.data), made.timestamp};
     }},
    {"EventGroup", "ai",
     [](GeneratedValues& values) {
         return QVariantList{QVariant::fromValue(values.list<MenuEvent>([&values] { return event(values); }))};
     }},
    {"AboutToShow", "b", [](GeneratedValues& values) { return QVariantList{values.identifier()}; }},
    {"AboutToShowGroup", "aiai", [](GeneratedValues& values) { return QVariantList{numbers(values)}; }},
};

/// A menu of every kind of entry on the loopback. What it shows changes with the number of clicks.
class PublishedMenu {
public:
    PublishedMenu() { menu_.publish(BusLoopback::shared().connection()); }

    int clicks() const { return clicks_; }

private:
    Menu build() {
        const auto click = [this] { ++clicks_; };
        Menu menu{
            MenuEntry::header(QStringLiteral("Header_1")), MenuEntry::separator(),
            MenuEntry::command(QStringLiteral("Command %1").arg(clicks_ % 3), click, QStringLiteral("Ctrl+D")),
            MenuEntry::opening(QStringLiteral("Submenu"),
                               {MenuEntry::command(QStringLiteral("Inner"), click), MenuEntry::separator()})};
        menu[2].isChecked = clicks_ % 2 == 1;
        if (clicks_ % 5 == 0) {
            menu.push_back(MenuEntry::command(QStringLiteral("Sometimes"), click));
        }
        return menu;
    }

    int clicks_ = 0;
    MenuObject menu_{[this] { return build(); }};
};

}  // namespace
}  // namespace kestro

// A call has the declared results or an error, and causes no more clicks than the menu has entries.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestro;
    constexpr int entries = 8;
    static PublishedMenu menu;
    GeneratedValues values({data, size});
    const Method& method = methods[values.byte() % std::size(methods)];
    const bool hasDeclaredTypes = !values.flag() || !values.flag();
    const int before = menu.clicks();
    const QDBusMessage reply = BusLoopback::call(
        BusLoopback::shared().connection(), MenuObject::path(), QStringLiteral("com.canonical.dbusmenu"),
        QString::fromLatin1(method.name), hasDeclaredTypes ? method.arguments(values) : values.arguments());
    require(reply.type() == QDBusMessage::ErrorMessage || reply.signature() == QLatin1StringView(method.results));
    if (reply.type() != QDBusMessage::ErrorMessage) {
        BusLoopback::handleEvents();
    }
    require(menu.clicks() - before <= entries);
    return 0;
}
