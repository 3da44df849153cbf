// For GNOME Shell 45 to 48.

import Clutter from 'gi://Clutter';
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import GObject from 'gi://GObject';
import St from 'gi://St';

import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
import * as Main from 'resource:///org/gnome/shell/ui/main.js';
import * as PanelMenu from 'resource:///org/gnome/shell/ui/panelMenu.js';
import * as PopupMenu from 'resource:///org/gnome/shell/ui/popupMenu.js';

import {createMenuReader, fillMenu} from './dbusMenu.js';
import {createReadoutButton} from './readoutButton.js';

const ReadoutButton = createReadoutButton(
    {Clutter, Gio, GLib, GObject, PanelMenu, PopupMenu, St, createMenuReader, fillMenu});

export default class KestroExtension extends Extension {
    enable() {
        this._button = new ReadoutButton();
        Main.panel.addToStatusArea(this.uuid, this._button);
    }

    disable() {
        this._button?.destroy();
        this._button = null;
    }
}
