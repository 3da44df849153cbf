// The readout in a panel: its symbol, and its text where the panel is horizontal.
import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.plasma.components 3.0 as PlasmaComponents

MouseArea {
    id: compact

    required property Readout readout
    required property bool isVertical

    Layout.minimumWidth: isVertical ? 0 : row.implicitWidth + 2 * Kirigami.Units.smallSpacing
    Layout.maximumWidth: isVertical ? Infinity : Layout.minimumWidth
    acceptedButtons: Qt.LeftButton | Qt.MiddleButton
    Accessible.name: readout.toolTip
    Accessible.role: Accessible.Button

    onClicked: (mouse) => {
        if (mouse.button === Qt.MiddleButton) {
            readout.toggleKeepAwake();
            return;
        }
        const place = mapToGlobal(width - 1, height / 2);
        const scale = Screen.devicePixelRatio;
        readout.showPopover(place.x * scale, place.y * scale);
    }

    RowLayout {
        id: row

        anchors.centerIn: parent
        spacing: Kirigami.Units.smallSpacing

        Kirigami.Icon {
            visible: compact.readout.symbol !== "" || !label.visible
            source: compact.readout.symbol !== "" ? compact.readout.symbol : "kestro-symbolic"
            // The colour of the panel's text, which can differ from that of windows.
            isMask: true
            color: label.color
            implicitWidth: Kirigami.Units.iconSizes.small
            implicitHeight: implicitWidth
        }
        PlasmaComponents.Label {
            id: label

            visible: !compact.isVertical && compact.readout.text !== ""
            text: compact.readout.text
            textFormat: Text.PlainText
            // Room for the widest text, so that the neighbours do not move.
            Layout.minimumWidth: Math.ceil(widest.advanceWidth)

            TextMetrics {
                id: widest

                font: label.font
                text: compact.readout.widestText
            }
        }
    }
}
