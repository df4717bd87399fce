/** The text in the top bar, with its menu. */
const FaceButton = GObject.registerClass({
    GTypeName: 'TidewellFaceButton',
}, class FaceButton extends PanelMenu.Button {
    _init(proxy) {
        super._init(0.5, 'Tidewell', true);
        this._proxy = proxy;
        this._figures = new Figures();
        this.add_child(this._figures);

        // Before the menu connects: its own handler opens it with Enter.
        this.connect('key-press-event', (_actor, event) => this._pressed(event.get_key_symbol()));
        this.connect('popup-menu', () => this._openMenu());
        this.setMenu(new PopupMenu.PopupMenu(this, 0.5, St.Side.TOP));
        this._rows = new Rows(proxy, this.menu);
        this._windows = new Windows(this);

        proxy.connectObject(
            'g-properties-changed', (_proxy, changed) => this._changed(changed),
            'notify::g-name-owner', () => this._ownerChanged(), this);
        this._ownerChanged();
    }

    destroy() {
        this._windows.destroy();
        this._rows.destroy();
        this._request('DetachFace');
        super.destroy();
    }

    /** Its middle on the stage. */
    get middle() {
        const [left, top] = this.get_transformed_position();
        const [width, height] = this.get_transformed_size();
        return [Math.round(left + width / 2), Math.round(top + height / 2)];
    }

    vfunc_event(event) {
        const type = event.type();
        if (type === Clutter.EventType.TOUCH_BEGIN)
            this._togglePanel();
        else if (type === Clutter.EventType.BUTTON_PRESS)
            this._clicked(event.get_button());
        return Clutter.EVENT_PROPAGATE;
    }

    // Tidewell on the bus

    _ownerChanged() {
        this.visible = this._proxy.g_name_owner !== null;
        if (this.visible) {
            this._request('AttachFace', new GLib.Variant('(s)', ['gnome-shell']));
            this._showText();
        }
    }

    _changed(changed) {
        if (changed.lookup_value('MenubarText', null))
            this._showText();
        if (this.menu.isOpen)
            this._rows.read();
    }

    _showText() {
        const text = this._proxy.get_cached_property('MenubarText')?.unpack();
        if (text) {
            this._figures.show(text);
            this.accessible_name = `Tidewell ${text}`;
        }
    }

    /** Calls a method. `otherwise` is called if it fails, for example because this Tidewell is older. */
    _request(method, parameters = null, otherwise = () => {}) {
        this._proxy.call(method, parameters, Gio.DBusCallFlags.NO_AUTO_START, -1, null, (proxy, result) => {
            try {
                proxy.call_finish(result);
            } catch {
                otherwise();
            }
        });
    }

    // What the user does

    _clicked(button) {
        if (button === Clutter.BUTTON_PRIMARY)
            this._togglePanel();
        else if (button === Clutter.BUTTON_MIDDLE)
            this._request('OpenDetail');
        else if (button === Clutter.BUTTON_SECONDARY)
            this._openMenu();
    }

    _pressed(key) {
        if ([Clutter.KEY_Return, Clutter.KEY_KP_Enter, Clutter.KEY_space].includes(key))
            this._togglePanel();
        else if (key === Clutter.KEY_Down)
            this._openMenu();
        else
            return Clutter.EVENT_PROPAGATE;
        return Clutter.EVENT_STOP;
    }

    _openMenu() {
        if (this.menu.isOpen) {
            this.menu.close();
            return;
        }
        this._windows.closePanel();
        this._rows.read(() => this.menu.open());
    }

    _togglePanel() {
        this.menu.close();
        if (this._windows.isPanelOpen) {
            this._windows.closePanel();
            return;
        }
        this._request('OpenPanelAt', new GLib.Variant('(ii)', this.middle), () => this._request('OpenPanel'));
    }
});

/** What the shell enables and disables. */
class Face {
    enable() {
        this._cancellable = new Gio.Cancellable();
        Gio.DBusProxy.new_for_bus(Gio.BusType.SESSION, Gio.DBusProxyFlags.DO_NOT_AUTO_START, null,
            SERVICE, PATH, SERVICE, this._cancellable, (_source, result) => this._connected(result));
    }

    disable() {
        this._cancellable.cancel();
        this._button?.destroy();
        this._button = null;
    }

    _connected(result) {
        try {
            this._button = new FaceButton(Gio.DBusProxy.new_for_bus_finish(result));
            Main.panel.addToStatusArea(UUID, this._button);
        } catch (error) {
            if (!error.matches?.(Gio.IOErrorEnum, Gio.IOErrorEnum.CANCELLED))
                logError(error, 'Tidewell cannot be shown');
        }
    }
}
