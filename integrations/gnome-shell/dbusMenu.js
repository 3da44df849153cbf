// Reads a menu exported as com.canonical.dbusmenu and fills a popup menu of the shell with it.

const menuInterface = 'com.canonical.dbusmenu';

/**
 * The entries of a menu on the bus.
 *
 * @param {object} deps - the modules Gio and GLib
 */
export function createMenuReader({Gio, GLib}) {
    function call(target, method, parameters, replyType) {
        return new Promise((resolve, reject) => {
            target.connection.call(
                target.name, target.path, menuInterface, method, parameters, new GLib.VariantType(replyType),
                Gio.DBusCallFlags.NO_AUTO_START, -1, target.cancellable, (connection, result) => {
                    try {
                        resolve(connection.call_finish(result));
                    } catch (error) {
                        reject(error);
                    }
                });
        });
    }

    /** One node of a layout, `(ia{sv}av)`, as a plain object. */
    function entry(node) {
        const [id, properties, children] = [0, 1, 2].map(index => node.get_child_value(index));
        const value = name => properties.lookup_value(name, null)?.recursiveUnpack();
        return {
            id: id.get_int32(),
            // An underscore marks an access key; a doubled one is a plain underscore.
            label: (value('label') ?? '').replace(/_(_?)/g, '$1'),
            isSeparator: value('type') === 'separator',
            isEnabled: value('enabled') ?? true,
            isVisible: value('visible') ?? true,
            isChecked: value('toggle-state') === 1,
            children: Array.from({length: children.n_children()},
                (_, index) => entry(children.get_child_value(index).get_variant())),
        };
    }

    return {
        /** The root entry of the menu as it is now. */
        async read(target) {
            await call(target, 'AboutToShow', new GLib.Variant('(i)', [0]), '(b)');
            const reply = await call(target, 'GetLayout', new GLib.Variant('(iias)', [0, -1, []]), '(u(ia{sv}av))');
            return entry(reply.get_child_value(1));
        },

        /** Reports that an entry was chosen. */
        choose(target, id) {
            call(target, 'Event', new GLib.Variant('(isvu)', [id, 'clicked', new GLib.Variant('i', 0), 0]), '()')
                .catch(() => {});
        },
    };
}

/**
 * Replaces the items of a popup menu.
 *
 * @param {object} PopupMenu - the shell's module
 * @param {object} menu - the menu to fill
 * @param {object} root - an entry whose children become the items
 * @param {Function} onChosen - called with the identifier of the chosen entry
 */
export function fillMenu(PopupMenu, menu, root, onChosen) {
    menu.removeAll();
    for (const child of root.children.filter(each => each.isVisible)) {
        if (child.isSeparator) {
            menu.addMenuItem(new PopupMenu.PopupSeparatorMenuItem());
            continue;
        }
        if (child.children.length > 0) {
            const submenu = new PopupMenu.PopupSubMenuMenuItem(child.label);
            // Aligned with the other items, which newer shells indent only with an ornament.
            submenu.setOrnament(PopupMenu.Ornament.NONE);
            fillMenu(PopupMenu, submenu.menu, child, onChosen);
            menu.addMenuItem(submenu);
            continue;
        }
        const item = new PopupMenu.PopupMenuItem(child.label, {reactive: child.isEnabled});
        item.setOrnament(child.isChecked ? PopupMenu.Ornament.CHECK : PopupMenu.Ornament.NONE);
        item.connect('activate', () => onChosen(child.id));
        menu.addMenuItem(item);
    }
}
