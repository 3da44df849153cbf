#include "tests/desktop/panel_settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kestro {

namespace {

// MATE's settings daemon makes applications show icons in buttons; without it nothing does.
const char* const gtkSettings = "[Settings]\ngtk-button-images=1\n";

const char* const xfceSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="true"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="26"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
)";

const char* const lxqtSettings = R"(panels=panel1
[panel1]
alignment=-1
desktop=0
iconSize=22
lineCount=1
panelSize=32
plugins=spacer, statusnotifier
position=Top
width=100
width-percent=true
[spacer]
type=spacer
expandable=true
[statusnotifier]
type=statusnotifier
)";

const char* const waybarSettings = R"({
    "layer": "top",
    "position": "top",
    "height": 30,
    "modules-right": ["tray"],
    "tray": {"icon-size": 20}
}
)";

void write(const QString& path, const char* text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text);
    }
}

}  // namespace

QString panelDesktop(DesktopPanel panel) {
    switch (panel) {
        case DesktopPanel::mate:
            return QStringLiteral("MATE");
        case DesktopPanel::xfce:
            return QStringLiteral("XFCE");
        case DesktopPanel::lxqt:
            return QStringLiteral("LXQt");
        case DesktopPanel::waybar:
        case DesktopPanel::waybarBesideX11:
            return QStringLiteral("sway");
        case DesktopPanel::none:
            break;
    }
    return {};
}

QStringList panelCommand(DesktopPanel panel) {
    switch (panel) {
        case DesktopPanel::mate:
            return {QStringLiteral("mate-panel")};
        case DesktopPanel::xfce:
            return {QStringLiteral("xfce4-panel"), QStringLiteral("--disable-wm-check")};
        case DesktopPanel::lxqt:
            return {QStringLiteral("lxqt-panel")};
        case DesktopPanel::waybar:
        case DesktopPanel::waybarBesideX11:
            return {QStringLiteral("waybar")};
        case DesktopPanel::none:
            break;
    }
    return {};
}

void writePanelSettings(DesktopPanel panel, const QString& config) {
    switch (panel) {
        case DesktopPanel::mate:
            write(config + QStringLiteral("/gtk-3.0/settings.ini"), gtkSettings);
            break;
        case DesktopPanel::xfce:
            write(config + QStringLiteral("/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"), xfceSettings);
            break;
        case DesktopPanel::lxqt:
            write(config + QStringLiteral("/lxqt/panel.conf"), lxqtSettings);
            break;
        case DesktopPanel::waybar:
        case DesktopPanel::waybarBesideX11:
            write(config + QStringLiteral("/waybar/config"), waybarSettings);
            break;
        case DesktopPanel::none:
            break;
    }
}

}  // namespace kestro
