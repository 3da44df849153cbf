// Kestro's readout in Plasma 6.
import QtQuick
import org.kde.plasma.core as PlasmaCore
import org.kde.plasma.plasma5support as Plasma5Support
import org.kde.plasma.plasmoid

PlasmoidItem {
    toolTipMainText: i18n("Kestro")
    toolTipSubText: source.toolTip.replace(/^Kestro: /, "")
    toolTipTextFormat: Text.PlainText
    compactRepresentation: CompactReadout {
        readout: source
        isVertical: Plasmoid.formFactor === PlasmaCore.Types.Vertical
    }
    fullRepresentation: FullReadout {
        readout: source
    }

    Plasmoid.status: source.isRunning ? PlasmaCore.Types.ActiveStatus : PlasmaCore.Types.HiddenStatus
    Plasmoid.contextualActions: [
        PlasmaCore.Action {
            text: i18n("Full Studio Dashboard")
            icon.name: "utilities-system-monitor"
            onTriggered: source.showDashboard()
        },
        PlasmaCore.Action {
            text: i18n("Settings…")
            icon.name: "configure"
            onTriggered: source.showSettings()
        },
        PlasmaCore.Action {
            text: i18n("Keep Awake")
            icon.name: "system-suspend-inhibited"
            onTriggered: source.toggleKeepAwake()
        }
    ]

    Readout {
        id: source

        programs: Plasma5Support.DataSource {
            engine: "executable"
        }
    }
}
