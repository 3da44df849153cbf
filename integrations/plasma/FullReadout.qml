// The readout where there is room, as on the desktop: its text, and what Kestro can be asked for.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.plasma.components 3.0 as PlasmaComponents

Item {
    id: full

    required property Readout readout

    Layout.minimumWidth: buttons.implicitWidth + 2 * Kirigami.Units.largeSpacing
    Layout.minimumHeight: content.implicitHeight + 2 * Kirigami.Units.largeSpacing

    ColumnLayout {
        id: content

        anchors {
            left: parent.left
            right: parent.right
            verticalCenter: parent.verticalCenter
            margins: Kirigami.Units.largeSpacing
        }
        spacing: Kirigami.Units.largeSpacing

        PlasmaComponents.Label {
            text: full.readout.isRunning ? full.readout.text : i18n("Kestro is not running.")
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        RowLayout {
            id: buttons

            PlasmaComponents.Button {
                text: i18n("Dashboard")
                onClicked: full.readout.showDashboard()
            }
            PlasmaComponents.Button {
                text: i18n("Settings")
                onClicked: full.readout.showSettings()
            }
            PlasmaComponents.Switch {
                id: keepAwake

                text: i18n("Keep Awake")
                checked: full.readout.isKeptAwake
                onToggled: {
                    full.readout.toggleKeepAwake();
                    answer.start();
                }

                // Shows again what holds where the request had no effect.
                Timer {
                    id: answer

                    interval: 3000
                    onTriggered: keepAwake.checked = Qt.binding(() => full.readout.isKeptAwake)
                }
            }
        }
    }
}
