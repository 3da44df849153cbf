// Kestro's readout in Plasma 5.
import QtQuick 2.15
import org.kde.plasma.core 2.0 as PlasmaCore
import org.kde.plasma.plasmoid 2.0

Item {
    Plasmoid.status: source.isRunning ? PlasmaCore.Types.ActiveStatus : PlasmaCore.Types.HiddenStatus
    Plasmoid.toolTipMainText: i18n("Kestro")
    Plasmoid.toolTipSubText: source.toolTip.replace(/^Kestro: /, "")
    Plasmoid.toolTipTextFormat: Text.PlainText
    Plasmoid.compactRepresentation: CompactReadout {
        readout: source
        isVertical: Plasmoid.formFactor === PlasmaCore.Types.Vertical
    }
    Plasmoid.fullRepresentation: FullReadout {
        readout: source
    }

    Readout {
        id: source

        programs: PlasmaCore.DataSource {
            engine: "executable"
        }
    }

    // Plasma calls the function of the action that is chosen.
    function action_dashboard() {
        source.showDashboard();
    }
    function action_settings() {
        source.showSettings();
    }
    function action_keepAwake() {
        source.toggleKeepAwake();
    }

    Component.onCompleted: {
        Plasmoid.setAction("dashboard", i18n("Full Studio Dashboard"), "utilities-system-monitor");
        Plasmoid.setAction("settings", i18n("Settings…"), "configure");
        Plasmoid.setAction("keepAwake", i18n("Keep Awake"));
    }
}
