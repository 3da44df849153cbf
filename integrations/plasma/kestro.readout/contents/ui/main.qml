// Kestro's readout in a panel of Plasma 5.27.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import org.kde.plasma.components 3.0 as PlasmaComponents
import org.kde.plasma.core 2.0 as PlasmaCore
import org.kde.plasma.plasmoid 2.0

Item {
    id: root

    Plasmoid.preferredRepresentation: Plasmoid.compactRepresentation
    Plasmoid.status: readout.isRunning ? PlasmaCore.Types.ActiveStatus : PlasmaCore.Types.HiddenStatus
    Plasmoid.toolTipMainText: i18n("Kestro")
    Plasmoid.toolTipSubText: readout.toolTip.replace(/^Kestro: /, "")
    Plasmoid.toolTipTextFormat: Text.PlainText

    Readout {
        id: readout
    }

    function action_dashboard() {
        readout.request("--show dashboard");
    }
    function action_settings() {
        readout.request("--show settings");
    }
    function action_keepAwake() {
        readout.request("--toggle-keep-awake");
    }

    Component.onCompleted: {
        Plasmoid.setAction("dashboard", i18n("Full Studio Dashboard"), "utilities-system-monitor");
        Plasmoid.setAction("settings", i18n("Settings…"), "configure");
        Plasmoid.setAction("keepAwake", i18n("Keep Awake"), "caffeine-cup-full");
    }

    Plasmoid.compactRepresentation: MouseArea {
        id: compact

        readonly property bool isVertical: Plasmoid.formFactor === PlasmaCore.Types.Vertical

        Layout.minimumWidth: isVertical ? 0 : row.implicitWidth + 2 * PlasmaCore.Units.smallSpacing
        Layout.maximumWidth: isVertical ? Infinity : Layout.minimumWidth
        acceptedButtons: Qt.LeftButton | Qt.MiddleButton
        Accessible.name: readout.toolTip
        Accessible.role: Accessible.Button

        onClicked: (mouse) => {
            if (mouse.button === Qt.MiddleButton) {
                root.action_keepAwake();
                return;
            }
            // Kestro opens the popover beside the panel, with its right edge at this point.
            const place = compact.mapToGlobal(width - 1, height / 2);
            const scale = Screen.devicePixelRatio;
            readout.request("--show popover --at " + Math.round(place.x * scale) + "," + Math.round(place.y * scale));
        }

        RowLayout {
            id: row

            anchors.centerIn: parent
            spacing: PlasmaCore.Units.smallSpacing

            PlasmaCore.IconItem {
                visible: readout.symbol !== "" || !label.visible
                source: readout.symbol !== "" ? readout.symbol : "kestro-symbolic"
                implicitWidth: PlasmaCore.Units.iconSizes.small
                implicitHeight: implicitWidth
            }
            PlasmaComponents.Label {
                id: label

                visible: !compact.isVertical && readout.text !== ""
                text: readout.text
                textFormat: Text.PlainText
                // Room for the widest text, so that the neighbours do not move.
                Layout.minimumWidth: Math.ceil(widest.advanceWidth)

                TextMetrics {
                    id: widest

                    font: label.font
                    text: readout.widestText
                }
            }
        }
    }

    Plasmoid.fullRepresentation: ColumnLayout {
        Layout.minimumWidth: PlasmaCore.Units.gridUnit * 14
        spacing: PlasmaCore.Units.largeSpacing

        PlasmaComponents.Label {
            text: readout.isRunning ? readout.text : i18n("Kestro is not running.")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        RowLayout {
            PlasmaComponents.Button {
                text: i18n("Dashboard")
                onClicked: root.action_dashboard()
            }
            PlasmaComponents.Button {
                text: i18n("Settings")
                onClicked: root.action_settings()
            }
            PlasmaComponents.Switch {
                text: i18n("Keep Awake")
                checked: readout.isKeptAwake
                onToggled: root.action_keepAwake()
            }
        }
    }
}
