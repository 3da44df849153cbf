// Follows the readout with the program kestro-readout, which sleeps between two changes. The engine that runs
// programs delivers their output when they end: so each run ends with the first line that differs from the last one.
// For Plasma 6: import org.kde.plasma.plasma5support as PlasmaCore
import QtQuick 2.15
import org.kde.plasma.core 2.0 as PlasmaCore

PlasmaCore.DataSource {
    id: source

    property bool isRunning: false
    property string text: ""
    property string toolTip: ""
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
        return "kestro-readout --waybar --after " + quoted(line);
    }

    /// Asks Kestro for something.
    function request(options) {
        connectSource("kestro-readout " + options);
    }

    function unescaped(markup) {
        return markup.replace(/&lt;/g, "<").replace(/&gt;/g, ">").replace(/&amp;/g, "&");
    }

    function take(line) {
        const readout = line === "" ? null : JSON.parse(line);
        source.isRunning = readout !== null;
        source.text = readout ? unescaped(readout.text) : "";
        source.toolTip = readout ? unescaped(readout.tooltip) : "";
        source.isKeptAwake = readout !== null && readout.class.indexOf("keep-awake") >= 0;
        source.line = line;
    }

    onNewData: (sourceName, data) => {
        const isFollowing = sourceName === following(source.line);
        disconnectSource(sourceName);
        if (isFollowing && data["exit code"] === 0) {
            take(data["stdout"].replace(/\n$/, ""));
            connectSource(following(source.line));
        } else if (isFollowing || sourceName === hosting) {
            retry.start();
        }
    }

    /// After the program could not run, such as during an upgrade.
    property Timer retry: Timer {
        interval: 10000
        onTriggered: source.start()
    }
}
