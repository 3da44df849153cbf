// For GNOME Shell 43 and 44.
/* exported init */

const {Clutter, Gio, GLib, GObject, St} = imports.gi;
const ExtensionUtils = imports.misc.extensionUtils;
const Main = imports.ui.main;
const PanelMenu = imports.ui.panelMenu;
const PopupMenu = imports.ui.popupMenu;

const Me = ExtensionUtils.getCurrentExtension();
const {createMenuReader, fillMenu} = Me.imports.dbusMenu;
const {createReadoutButton} = Me.imports.readoutButton;

const ReadoutButton = createReadoutButton(
    {Clutter, Gio, GLib, GObject, PanelMenu, PopupMenu, St, createMenuReader, fillMenu});

class KestroExtension {
    enable() {
        this._button = new ReadoutButton();
        Main.panel.addToStatusArea(Me.uuid, this._button);
    }

    disable() {
        this._button?.destroy();
        this._button = null;
    }
}

function init() {
    return new KestroExtension();
}
