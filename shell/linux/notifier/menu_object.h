#pragma once

#include "shell/linux/notifier/action_queue.h"
#include "shell/linux/notifier/bus_object.h"
#include "shell/linux/notifier/menu_tree.h"
#include "shell/status_bar.h"

#include <QDBusConnection>

#include <functional>

namespace kestro {

/// A menu exported as com.canonical.dbusmenu, by default at "/MenuBar". It is rebuilt whenever a host announces
/// that it opens, and once for a host that reads it earlier. Chosen entries run from the event loop after the host
/// has its reply, one in each turn and once for several clicks that arrive together; they are dropped if this
/// object is destroyed first. Whatever a call contains, its cost is bounded by the size of the menu. Main thread.
class MenuObject {
public:
    explicit MenuObject(std::function<Menu()> buildMenu, const QString& objectPath = path());

    static QString path() { return QStringLiteral("/MenuBar"); }

    bool publish(const QDBusConnection& connection) { return object_.publish(connection); }
    void withdraw() { object_.withdraw(); }

private:
    BusReply getLayout(const QVariantList& arguments);
    BusReply getGroupProperties(const QVariantList& arguments);
    BusReply getProperty(const QVariantList& arguments);
    BusReply receiveEvent(const QVariantList& arguments);
    BusReply eventGroup(const QVariantList& arguments);
    BusReply aboutToShow(const QVariantList& arguments);
    BusReply aboutToShowGroup(const QVariantList& arguments);

    using Method = BusReply (MenuObject::*)(const QVariantList&);
    void addMethod(const char* name, const char* signature, Method method);

    void ensureBuilt();
    bool rebuild();
    bool handle(int id, const QString& event);

    std::function<Menu()> buildMenu_;
    MenuTree tree_;
    bool isBuilt_ = false;
    ActionQueue actions_;
    BusObject object_;
};

}  // namespace kestro
