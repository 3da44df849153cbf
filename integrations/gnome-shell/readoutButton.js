// The readout as a button of the top bar. Shows itself while Kestro runs and follows it without polling.

const busName = 'kestro.Readout';
const objectPath = '/kestro/Readout';
const propertiesInterface = 'org.freedesktop.DBus.Properties';
const shortestPauseSeconds = 1;
const longestPauseSeconds = 30;

/**
 * Defines the button's class. The shell's modules are parameters, because older shells load them in another way.
 *
 * @param {object} deps - the modules Clutter, Gio, GLib, GObject, PanelMenu, PopupMenu and St, and from dbusMenu.js
 *     createMenuReader and fillMenu
 */
export function createReadoutButton(deps) {
    const {Clutter, Gio, GLib, GObject, PanelMenu, PopupMenu, St} = deps;
    const menuReader = deps.createMenuReader(deps);

    /** A menu that leaves the keys which would open it to its button. */
    class ReadoutMenu extends PopupMenu.PopupMenu {
        _onKeyPress(actor, event) {
            return this.isOpen ? super._onKeyPress(actor, event) : Clutter.EVENT_PROPAGATE;
        }
    }

    return GObject.registerClass(
    class KestroReadoutButton extends PanelMenu.Button {
        _init() {
            super._init(0.5, 'Kestro', true);
            this.setMenu(new ReadoutMenu(this, 0.5, St.Side.TOP));
            const box = new St.BoxLayout({style_class: 'panel-status-menu-box kestro-readout'});
            this._icon = new St.Icon({style_class: 'system-status-icon', visible: false});
            this._label = new St.Label({y_align: Clutter.ActorAlign.CENTER, visible: false});
            box.add_child(this._icon);
            box.add_child(this._label);
            this.add_child(box);
            this.visible = false;
            this._owner = null;
            this._retry = 0;
            this._widestText = '';
            this._cancellable = new Gio.Cancellable();
            this._connection = Gio.DBus.session;
            this._styleSignal = this._label.connect('style-changed', () => this._reserveWidth());
            this._changes = this._connection.signal_subscribe(
                null, propertiesInterface, 'PropertiesChanged', objectPath, busName, Gio.DBusSignalFlags.NONE,
                (connection, sender, path, iface, signal, parameters) => {
                    if (sender === this._owner)
                        this._apply(parameters.get_child_value(1));
                });
            this._watch = Gio.bus_watch_name_on_connection(
                this._connection, busName, Gio.BusNameWatcherFlags.NONE,
                (connection, name, owner) => this._appear(owner), () => this._disappear());
        }

        /** Calls Kestro without starting it. Drops the reply if the owner of its name has changed meanwhile. */
        _call(iface, method, parameters, onReply = null, onError = null) {
            const owner = this._owner;
            this._connection.call(
                this._owner ?? busName, objectPath, iface, method, parameters, null,
                Gio.DBusCallFlags.NO_AUTO_START, -1, this._cancellable, (connection, result) => {
                    let reply = null;
                    try {
                        reply = connection.call_finish(result);
                    } catch {
                        // Kestro has ended or failed, or this button has ended.
                    }
                    if (this._owner === owner)
                        (reply ? onReply : onError)?.(reply);
                });
        }

        _appear(owner) {
            this._stopRetrying();
            this._owner = owner;
            this._follow(shortestPauseSeconds);
        }

        /** Follows Kestro, then reads it, so that no change is missed. If either fails, tries again after a pause. */
        _follow(pauseSeconds) {
            const onError = () => {
                this.visible = false;
                this._retry = GLib.timeout_add_seconds(GLib.PRIORITY_DEFAULT, pauseSeconds, () => {
                    this._retry = 0;
                    this._follow(Math.min(2 * pauseSeconds, longestPauseSeconds));
                    return GLib.SOURCE_REMOVE;
                });
            };
            this._call(busName, 'Follow', new GLib.Variant('(as)', [[]]), () => {
                this._call(propertiesInterface, 'GetAll', new GLib.Variant('(s)', [busName]), reply => {
                    this._apply(reply.get_child_value(0));
                    this.visible = true;
                    this._call(busName, 'RegisterHost', null);
                }, onError);
            }, onError);
        }

        _stopRetrying() {
            if (this._retry !== 0)
                GLib.Source.remove(this._retry);
            this._retry = 0;
        }

        _disappear() {
            this._stopRetrying();
            this._owner = null;
            this.visible = false;
            this.menu.close();
        }

        /** Shows the changed properties, given as `a{sv}`. */
        _apply(properties) {
            const text = name => properties.lookup_value(name, new GLib.VariantType('s'))?.get_string()[0];
            const shown = text('Text');
            if (shown !== undefined) {
                this._label.text = shown;
                this._label.visible = shown !== '';
            }
            const symbol = text('Symbol');
            if (symbol !== undefined) {
                this._icon.icon_name = symbol;
                this._icon.visible = symbol !== '';
            }
            const widest = text('WidestText');
            if (widest !== undefined) {
                this._widestText = widest;
                this._reserveWidth();
            }
            const toolTip = text('ToolTip');
            if (toolTip !== undefined)
                this.accessible_name = toolTip;
        }

        /** Keeps the width that the widest text needs, so that the button's neighbours do not move. */
        _reserveWidth() {
            if (this._label.get_stage() === null)
                return;
            // The label's own layout has its font. ClutterText's accessor of the font must not be used: the shell frees
            // what that returns, which still belongs to the text, and crashes.
            const layout = this._label.clutter_text.get_layout().copy();
            layout.set_text(this._widestText, -1);
            layout.set_width(-1);
            const {scale_factor: scale} = St.ThemeContext.get_for_stage(this._label.get_stage());
            const width = Math.ceil(layout.get_pixel_size()[0] / scale);
            // Both: the shell does not survive a minimum above the natural width.
            const style = `min-width: ${width}px; width: ${width}px;`;
            if (this._label.style !== style)
                this._label.style = style;
        }

        vfunc_event(event) {
            const type = event.type();
            if (type === Clutter.EventType.BUTTON_PRESS)
                return this._press(event.get_button());
            if (type === Clutter.EventType.TOUCH_BEGIN)
                return this._press(Clutter.BUTTON_PRIMARY);
            return Clutter.EVENT_PROPAGATE;
        }

        vfunc_key_press_event(event) {
            const key = event.get_key_symbol?.() ?? event.keyval;
            if (key === Clutter.KEY_Return || key === Clutter.KEY_space)
                return this._press(Clutter.BUTTON_PRIMARY);
            if (key === Clutter.KEY_Menu || key === Clutter.KEY_Down)
                return this._press(Clutter.BUTTON_SECONDARY);
            return Clutter.EVENT_PROPAGATE;
        }

        _press(button) {
            if (button === Clutter.BUTTON_PRIMARY)
                this._togglePopover();
            else if (button === Clutter.BUTTON_MIDDLE)
                this._call(busName, 'ToggleKeepAwake', null);
            else
                this._openMenu().catch(() => {});
            return Clutter.EVENT_STOP;
        }

        _togglePopover() {
            const [x, y] = this.get_transformed_position();
            const [width, height] = this.get_transformed_size();
            // Kestro opens the popover below the panel, with its right edge here.
            const point = [Math.round(x + width - 1), Math.round(y + height - 1)];
            this._call(busName, 'TogglePopover', new GLib.Variant('(ii)', point));
        }

        async _openMenu() {
            if (this.menu.isOpen) {
                this.menu.close();
                return;
            }
            const target = {
                connection: this._connection,
                name: this._owner,
                path: `${objectPath}/Menu`,
                cancellable: this._cancellable,
            };
            const root = await menuReader.read(target);
            deps.fillMenu(PopupMenu, this.menu, root, id => menuReader.choose(target, id));
            this.menu.open();
        }

        _onDestroy() {
            this._cancellable.cancel();
            this._connection.signal_unsubscribe(this._changes);
            Gio.bus_unwatch_name(this._watch);
            this._stopRetrying();
            const owner = this._owner;
            this._owner = null;
            if (owner !== null) {
                // The shell stays on the bus, so Kestro would not notice. These calls must not be cancelled.
                for (const method of ['UnregisterHost', 'Unfollow']) {
                    this._connection.call(owner, objectPath, busName, method, null, null,
                        Gio.DBusCallFlags.NO_AUTO_START, -1, null, null);
                }
            }
            super._onDestroy?.();
        }
    });
}
