// Follows the readout with the program kestro-readout, which sleeps between two changes. The engine that runs
// programs delivers their output when they end: so each run ends with the first line that differs from the last one,
// and the next run starts a second later at the earliest.
import QtQuick 2.15
import org.kde.plasma.core 2.0 as PlasmaCore

PlasmaCore.DataSource {
    id: source

    property bool isRunning: false
    property string text: ""
    property string widestText: ""
    property string toolTip: ""
    property string symbol: ""
    property bool isKeptAwake: false

    /// The last line; nothing is printed that equals it.
    property string line: "?"

    readonly property string hosting: "kestro-readout --host --silent"

    engine: "executable"
    Component.onCompleted: start()

    function start() {
        connectSource(hosting);
        connectSource(following(line));
    }

    function quoted(word) {
        return "'" + word.replace(/'/g, "'\\''") + "'";
    }

    function following(line) {
        return "kestro-readout --json --after " + quoted(line);
    }

    /// Asks Kestro for something.
    function request(options) {
        connectSource("kestro-readout " + options);
    }

    function take(line) {
        const readout = line === "" ? null : JSON.parse(line);
        source.isRunning = readout !== null;
        source.text = readout ? readout.text : "";
        source.widestText = readout ? readout.widest_text : "";
        source.toolTip = readout ? readout.tooltip : "";
        source.symbol = readout ? readout.symbol : "";
        source.isKeptAwake = readout !== null && readout.keep_awake;
        source.line = line;
    }

    onNewData: (sourceName, data) => {
        const isFollowing = sourceName === following(source.line);
        disconnectSource(sourceName);
        if (isFollowing && data["exit code"] === 0) {
            take(data["stdout"].replace(/\n$/, ""));
            next.start();
        } else if (isFollowing || sourceName === hosting) {
            retry.start();
        }
    }

    property Timer next: Timer {
        interval: 1000
        onTriggered: source.connectSource(source.following(source.line))
    }

    /// After the program could not run, such as during an upgrade.
    property Timer retry: Timer {
        interval: 10000
        onTriggered: source.start()
    }
}
