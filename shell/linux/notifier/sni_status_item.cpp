#include "shell/linux/notifier/sni_status_item.h"

#include "shell/linux/panel_anchor.h"
#include "shell/linux/panel_scheme_monitor.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDBusMessage>
#include <QGuiApplication>

#include <utility>
#include <vector>

namespace kestro {

namespace {

// org.kde.StatusNotifierItem as the KDE frameworks describe it, with Ayatana's labels.
const char* const description = R"xml(
<interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="IconAccessibleDesc" type="s" access="read"/>
  <property name="OverlayIconName" type="s" access="read"/>
  <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionMovieName" type="s" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="XAyatanaLabel" type="s" access="read"/>
  <property name="XAyatanaLabelGuide" type="s" access="read"/>
  <method name="ProvideXdgActivationToken"><arg name="token" type="s" direction="in"/></method>
  <method name="ContextMenu">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="Activate">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="SecondaryActivate">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="Scroll">
    <arg name="delta" type="i" direction="in"/>
    <arg name="orientation" type="s" direction="in"/>
  </method>
  <signal name="NewTitle"/>
  <signal name="NewIcon"/>
  <signal name="NewAttentionIcon"/>
  <signal name="NewOverlayIcon"/>
  <signal name="NewMenu"/>
  <signal name="NewToolTip"/>
  <signal name="NewStatus"><arg name="status" type="s"/></signal>
  <signal name="XAyatanaNewLabel">
    <arg name="label" type="s"/>
    <arg name="guide" type="s"/>
  </signal>
</interface>
)xml";

/// Longer than any compositor's activation token.
constexpr qsizetype longestToken = 512;

/// Connections are process-wide by name.
QString uniqueConnectionName() {
    static int count = 0;
    return QStringLiteral("kestro-status-item-%1").arg(++count);
}

/// The next name of an item of this process.
QString nextServiceName() {
    static int number = 0;
    return QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
        .arg(QCoreApplication::applicationPid())
        .arg(++number);
}

/// More items than all processes with the same identifier, in different namespaces, have on one bus.
constexpr int maximumNamesToTry = 100;

/// A text property that an item has only while it shows a label.
QVariant labelProperty(const NotifierPresentation& shown, const QString& text) {
    return shown.label.isEmpty() ? QVariant() : QVariant(text);
}

/// The actions of an item that wait for a turn of the event loop.
enum class ItemAction { primaryClick, secondaryClick, openMenu };

/// The position of a click that a host reports with its coordinates.
std::optional<QPoint> clickPlace(const QVariantList& arguments) {
    const std::vector<ScreenFrame> screens = currentScreens();
    const QPoint reported(arguments.at(0).toInt(), arguments.at(1).toInt());
    return clickPoint(pointFromPanel(reported, screens), currentPointer(), screens);
}

bool isControlHeld() {
    return QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
}

}  // namespace

SniStatusItem::SniStatusItem(const QString& identifier, StatusItemHandlers handlers, const HostMonitor& monitor,
                             const PanelSchemeMonitor& scheme)
    : handlers_(std::move(handlers)),
      monitor_(monitor),
      scheme_(scheme),
      connection_(monitor.environment().connect(uniqueConnectionName())),
      object_(QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.kde.StatusNotifierItem"),
              QString::fromLatin1(description)),
      menu_([this] { return buildMenu(); }) {
    addProperties(identifier);
    addMethods();
    shown_ = notifierPresentation(content_, monitor_.labels());
    icon_.setIcon(shown_.icon, scheme_.look());
    if (connection_.isConnected() && object_.publish(connection_) && menu_.publish(connection_) &&
        claimServiceName()) {
        registerWithWatcher();
    }
    connect(&monitor_, &HostMonitor::hostArrived, this, &SniStatusItem::registerWithWatcher);
    connect(&monitor_, &HostMonitor::hostIdentified, this, &SniStatusItem::present);
    connect(&scheme_, &PanelSchemeMonitor::lookChanged, this, &SniStatusItem::present);
}

SniStatusItem::~SniStatusItem() {
    object_.withdraw();
    menu_.withdraw();
    QDBusConnection::disconnectFromBus(connection_.name());
}

void SniStatusItem::addProperties(const QString& identifier) {
    const auto add = [this](const char* name, BusObject::Getter getter) {
        object_.addProperty(QString::fromLatin1(name), std::move(getter));
    };
    const auto addConstant = [&add](const char* name, const QVariant& value) {
        add(name, [value] { return value; });
    };
    const QVariant noPixmaps = QVariant::fromValue(NotifierPixmaps());
    addConstant("Category", QStringLiteral("Hardware"));
    addConstant("Id", identifier);
    addConstant("Status", QStringLiteral("Active"));
    addConstant("WindowId", 0);
    addConstant("IconThemePath", QString());
    addConstant("Menu", QVariant::fromValue(QDBusObjectPath(MenuObject::path())));
    addConstant("ItemIsMenu", !handlers_.onClick);
    addConstant("IconName", QString());
    addConstant("OverlayIconName", QString());
    addConstant("OverlayIconPixmap", noPixmaps);
    addConstant("AttentionIconName", QString());
    addConstant("AttentionIconPixmap", noPixmaps);
    addConstant("AttentionMovieName", QString());
    add("Title", [this] { return shown_.title; });
    add("IconPixmap", [this] { return QVariant::fromValue(icon_.pixmaps()); });
    add("IconAccessibleDesc", [this] { return shown_.accessibleDescription; });
    add("ToolTip", [this] {
        return QVariant::fromValue(
            NotifierToolTip{{}, {}, escapedMarkup(shown_.toolTipTitle), escapedMarkup(shown_.toolTipText)});
    });
    add("XAyatanaLabel", [this] { return labelProperty(shown_, shown_.label); });
    add("XAyatanaLabelGuide", [this] { return labelProperty(shown_, shown_.labelGuide); });
}

void SniStatusItem::addMethods() {
    object_.addMethod(QStringLiteral("Activate"), QStringLiteral("ii"),
                      [this](const QVariantList& arguments) { return activate(arguments, StatusClick::primary); });
    object_.addMethod(
        QStringLiteral("SecondaryActivate"), QStringLiteral("ii"),
        [this](const QVariantList& arguments) { return activate(arguments, StatusClick::secondary); });
    object_.addMethod(QStringLiteral("ContextMenu"), QStringLiteral("ii"),
                      [this](const QVariantList& arguments) { return contextMenu(arguments); });
    object_.addMethod(QStringLiteral("Scroll"), QStringLiteral("is"),
                      [this](const QVariantList& arguments) { return scroll(arguments); });
    object_.addMethod(QStringLiteral("ProvideXdgActivationToken"), QStringLiteral("s"),
                      [this](const QVariantList& arguments) { return provideActivationToken(arguments); });
}

/// Another process can own a name with this process's identifier: one in a container, for example.
bool SniStatusItem::claimServiceName() {
    for (int attempt = 0; attempt < maximumNamesToTry; ++attempt) {
        const QString name = nextServiceName();
        if (connection_.registerService(name)) {
            serviceName_ = name;
            return true;
        }
        if (!connection_.isConnected()) {
            break;
        }
    }
    return false;
}

void SniStatusItem::registerAnew() {
    if (!serviceName_.isEmpty()) {
        connection_.unregisterService(std::exchange(serviceName_, {}));
        if (claimServiceName()) {
            registerWithWatcher();
        }
    }
}

void SniStatusItem::registerWithWatcher() {
    if (serviceName_.isEmpty()) {
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(HostMonitor::watcherService(), HostMonitor::watcherPath(),
                                                       HostMonitor::watcherService(),
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << serviceName_;
    call.setAutoStartService(false);
    connection_.send(call);
}

void SniStatusItem::setContent(const StatusContent& content) {
    if (content == content_) {
        return;
    }
    content_ = content;
    present();
}

void SniStatusItem::present() {
    const NotifierPresentation before = std::exchange(shown_, notifierPresentation(content_, monitor_.labels()));
    announce(before);
    if (shown_.label.isEmpty() && !before.label.isEmpty()) {
        registerAnew();
    }
}

void SniStatusItem::announce(const NotifierPresentation& before) {
    if (shown_.title != before.title) {
        object_.emitSignal(QStringLiteral("NewTitle"));
    }
    if (icon_.setIcon(shown_.icon, scheme_.look())) {
        object_.emitSignal(QStringLiteral("NewIcon"));
    }
    if (shown_.toolTipTitle != before.toolTipTitle || shown_.toolTipText != before.toolTipText) {
        object_.emitSignal(QStringLiteral("NewToolTip"));
    }
    if (!shown_.label.isEmpty() && (shown_.label != before.label || shown_.labelGuide != before.labelGuide)) {
        object_.emitSignal(QStringLiteral("XAyatanaNewLabel"), {shown_.label, shown_.labelGuide});
    }
}

BusReply SniStatusItem::activate(const QVariantList& arguments, StatusClick click) {
    const auto point = clickPlace(arguments);
    const auto action = click == StatusClick::primary ? ItemAction::primaryClick : ItemAction::secondaryClick;
    clicks_.add(static_cast<int>(action), [this, click, point] {
        lastClick_ = point;
        if (!handlers_.onClick) {
            openMenu(point);
            return;
        }
        // A click can destroy this item; its handler must survive the call.
        const auto onClick = handlers_.onClick;
        onClick(click, isControlHeld(), panelAnchor(point, currentScreensAndPanels()));
    });
    return QVariantList{};
}

BusReply SniStatusItem::contextMenu(const QVariantList& arguments) {
    const auto point = clickPlace(arguments);
    clicks_.add(static_cast<int>(ItemAction::openMenu), [this, point] { openMenu(point); });
    return QVariantList{};
}

BusReply SniStatusItem::scroll(const QVariantList& arguments) {
    const QString orientation = arguments.at(1).toString().toLower();
    if (orientation != QLatin1StringView("horizontal") && orientation != QLatin1StringView("vertical")) {
        return BusRefusal{QStringLiteral("the orientation is \"horizontal\" or \"vertical\"")};
    }
    // Scrolling over an item has no effect; acknowledge it anyway.
    return QVariantList{};
}

BusReply SniStatusItem::provideActivationToken(const QVariantList& arguments) {
    const QByteArray token = arguments.at(0).toString().toUtf8();
    if (token.size() > longestToken || token.contains('\0')) {
        return BusRefusal{QStringLiteral("no activation token looks like that")};
    }
    // The windowing system uses this token for the next window activation.
    qputenv("XDG_ACTIVATION_TOKEN", token);
    return QVariantList{};
}

void SniStatusItem::openMenu(std::optional<QPoint> position) {
    popup_.open(buildMenu(), position ? *position : lastClick_.value_or(QCursor::pos()));
}

Menu SniStatusItem::buildMenu() const {
    return handlers_.buildMenu ? handlers_.buildMenu() : Menu();
}

}  // namespace kestro
