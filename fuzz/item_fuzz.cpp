#include "fuzz/bus_loopback.h"
#include "fuzz/generated_values.h"
#include "fuzz/requirement.h"
#include "shell/linux/notifier/sni_status_item.h"
#include "shell/linux/panel_scheme_monitor.h"

#include <QDBusVariant>

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace kestro {
namespace {

constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

constexpr const char* properties[] = {"Category", "Id", "Title", "IconPixmap", "ToolTip", "Menu", "XAyatanaLabel"};

struct Method {
    const char* interface;
    const char* name;
    const char* results;
    QVariantList (*arguments)(GeneratedValues&);
};

QVariantList place(GeneratedValues& values) {
    return {values.number(), values.number()};
}

QString interface(GeneratedValues& values) {
    return values.flag() ? QString::fromLatin1(itemInterface) : values.text();
}

QString property(GeneratedValues& values) {
    return values.flag() ? QString::fromLatin1(properties[values.byte() % std::size(properties)]) : values.text();
}

const Method methods[] = {
    {itemInterface, "Activate", "", place},
    {itemInterface, "SecondaryActivate", "", place},
    {itemInterface, "ContextMenu", "", place},
    {itemInterface, "Scroll", "",
     [](GeneratedValues& values) {
         const QString orientation = values.flag() ? QStringLiteral("Vertical") : values.text();
         return QVariantList{values.number(), orientation};
     }},
    {itemInterface, "ProvideXdgActivationToken", "",
     [](GeneratedValues& values) { return QVariantList{values.text()}; }},
    {propertiesInterface, "Get", "v",
     [](GeneratedValues& values) {
         return QVariantList{interface(values), property(values)};
     }},
    {propertiesInterface, "GetAll", "a{sv}",
     [](GeneratedValues& values) { return QVariantList{interface(values)}; }},
    {propertiesInterface, "Set", "",
     [](GeneratedValues& values) {
         return QVariantList{interface(values), property(values), QVariant::fromValue(QDBusVariant(values.any()))};
     }},
};

/// An item without a host, whose menu is empty.
class PublishedItem {
public:
    PublishedItem() { require(connection_.isConnected() && !item_.serviceName().isEmpty()); }

    int clicks() const { return clicks_; }
    const QDBusConnection& connection() const { return connection_; }

private:
    int clicks_ = 0;
    HostMonitor monitor_{{.busAddress = BusLoopback::shared().busAddress(),
                          .desktops = {},
                          .processName = [](uint) { return QString(); }}};
    PanelSchemeMonitor scheme_{monitor_};
    SniStatusItem item_{QStringLiteral("kestro-main"),
                        {.onClick = [this](StatusClick, bool, const QRect&) { ++clicks_; }, .buildMenu = {}},
                        monitor_,
                        scheme_};
    QDBusConnection connection_{QStringLiteral("kestro-status-item-1")};
};

}  // namespace
}  // namespace kestro

// A call has the declared results or an error, and causes at most one click. No property can be set.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestro;
    constexpr qsizetype longestToken = 512;
    static PublishedItem item;
    GeneratedValues values({data, size});
    const Method& method = methods[values.byte() % std::size(methods)];
    const bool hasDeclaredTypes = !values.flag() || !values.flag();
    const int before = item.clicks();
    const QDBusMessage reply = BusLoopback::call(
        item.connection(), QStringLiteral("/StatusNotifierItem"), QString::fromLatin1(method.interface),
        QString::fromLatin1(method.name), hasDeclaredTypes ? method.arguments(values) : values.arguments());
    require(reply.type() == QDBusMessage::ErrorMessage || reply.signature() == QLatin1StringView(method.results));
    require(reply.type() == QDBusMessage::ErrorMessage ||
            QLatin1StringView(method.name) != QLatin1StringView("Set"));
    if (reply.type() != QDBusMessage::ErrorMessage) {
        BusLoopback::handleEvents();
    }
    require(item.clicks() - before <= 1);
    require(qgetenv("XDG_ACTIVATION_TOKEN").size() <= longestToken);
    return 0;
}
