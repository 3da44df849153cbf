// Follows the readout with the program kestro-readout, which sleeps between two changes. The engine that runs
// programs delivers their output when they end: so each run ends with the first line that differs from the last one,
// and the next run starts a second later at the earliest.
import QtQuick 2.15

QtObject {
    id: readout

    /// Plasma's data source that runs programs; each of its versions has another type for it.
    required property QtObject programs

    property bool isRunning: false
    property string text: ""
    property string widestText: ""
    property string toolTip: ""
    property string symbol: ""
    property bool isKeptAwake: false

    /// The last line; nothing is printed that equals it.
    property string line: "?"

    readonly property string hosting: "kestro-readout --host --silent"

    Component.onCompleted: start()

    function start() {
        programs.connectSource(hosting);
        programs.connectSource(following(line));
    }

    function quoted(word) {
        return "'" + word.replace(/'/g, "'\\''") + "'";
    }

    function following(line) {
        return "kestro-readout --json --after " + quoted(line);
    }

    function showDashboard() {
        request("--show dashboard");
    }

    function showSettings() {
        request("--show settings");
    }

    function toggleKeepAwake() {
        request("--toggle-keep-awake");
    }

    /// Kestro opens the popover beside the panel, with its right edge at this point, in pixels of the screen.
    function showPopover(x, y) {
        request("--show popover --at " + Math.round(x) + "," + Math.round(y));
    }

    function request(options) {
        programs.connectSource("kestro-readout " + options);
    }

    function take(line) {
        const record = line === "" ? null : JSON.parse(line);
        isRunning = record !== null;
        text = record ? record.text : "";
        widestText = record ? record.widest_text : "";
        toolTip = record ? record.tooltip : "";
        symbol = record ? record.symbol : "";
        isKeptAwake = record !== null && record.keep_awake;
        readout.line = line;
    }

    property Connections output: Connections {
        target: readout.programs

        function onNewData(sourceName, data) {
            const isFollowing = sourceName === readout.following(readout.line);
            readout.programs.disconnectSource(sourceName);
            if (isFollowing && data["exit code"] === 0) {
                readout.take(data["stdout"].replace(/\n$/, ""));
                readout.next.start();
            } else if (isFollowing || sourceName === readout.hosting) {
                readout.retry.start();
            }
        }
    }

    property Timer next: Timer {
        interval: 1000
        onTriggered: readout.programs.connectSource(readout.following(readout.line))
    }

    /// After the program could not run, such as during an upgrade.
    property Timer retry: Timer {
        interval: 10000
        onTriggered: readout.start()
    }
}
