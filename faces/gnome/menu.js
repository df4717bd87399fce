const MENU_PATH = '/MenuBar';
const MENU_INTERFACE = 'com.canonical.dbusmenu';
const ACTION = 'x-tidewell-action';
const COPY = 'copy';
const UNKNOWN = '--';

/** The rows of Tidewell's menu, which it offers on the bus. */
class Rows {
    constructor(proxy, menu) {
        this._proxy = proxy;
        this._menu = menu;
        this._items = new Map();
        this._cancellable = new Gio.Cancellable();
    }

    /** Reads the menu, and then calls the function. */
    read(done = () => {}) {
        this._call('AboutToShow', new GLib.Variant('(i)', [0]));
        this._call('GetLayout', new GLib.Variant('(iias)', [0, -1, []]), reply => {
            const [, [, , rows]] = reply.recursiveUnpack();
            if (rows.length !== this._items.size)
                this._build(rows);
            for (const [id, {label}] of rows)
                this._items.get(id)?.label?.set_text((label ?? '').replace(/_(.?)/g, '$1'));
            done();
        });
    }

    destroy() {
        this._cancellable.cancel();
    }

    _build(rows) {
        this._menu.removeAll();
        this._items.clear();
        for (const [id, {type, enabled, [ACTION]: action}] of rows) {
            const item = type === 'separator'
                ? new PopupMenu.PopupSeparatorMenuItem()
                : new PopupMenu.PopupMenuItem('', {reactive: enabled !== false});
            item.connect('activate', () => this._choose(id, action));
            this._menu.addMenuItem(item);
            this._items.set(id, item);
        }
    }

    _choose(id, action) {
        // Under Wayland only the shell and the program with the focus can set the clipboard.
        if (action === COPY) {
            this._copyAddress();
            return;
        }
        const data = new GLib.Variant('i', 0);
        this._call('Event', new GLib.Variant('(isvu)', [id, 'clicked', data, global.get_current_time()]));
    }

    _copyAddress() {
        const [outside, inside] = ['PublicIp', 'IpAddress'].map(name => this._proxy.get_cached_property(name)?.unpack());
        St.Clipboard.get_default().set_text(St.ClipboardType.CLIPBOARD, outside === UNKNOWN ? inside : outside);
    }

    _call(method, parameters, answered = null) {
        this._proxy.get_connection().call(SERVICE, MENU_PATH, MENU_INTERFACE, method, parameters, null,
            Gio.DBusCallFlags.NO_AUTO_START, -1, this._cancellable, (connection, result) => {
                let reply;
                try {
                    reply = connection.call_finish(result);
                } catch {
                    return; // Tidewell has ended, or this extension was disabled.
                }
                answered?.(reply);
            });
    }
}
