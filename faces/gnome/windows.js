// Under Wayland windows have the service's name as their application id, under X11 they have this class.
const WINDOW_CLASSES = [SERVICE, 'Tidewell'];
const PANEL_TITLE = 'Tidewell';
// Between the panel and the edges of the work area, in logical pixels.
const GAP = 8;

function isOurs(window) {
    return WINDOW_CLASSES.includes(window.get_wm_class());
}

/** Tidewell's windows: moves the panel to its button in the bar before it is seen, and closes it. */
class Windows {
    constructor(button) {
        this._button = button;
        this._panel = null;
        global.window_manager.connectObject('map', (_wm, actor) => this._mapped(actor.meta_window), this);
        global.display.connectObject(
            'notify::focus-window', () => this._focusChanged(),
            'window-demands-attention', (_display, window) => this._activate(window), this);
        global.stage.connectObject('captured-event', (_stage, event) => this._seen(event), this);
        Main.overview.connectObject('showing', () => this.closePanel(), this);
        Main.layoutManager.connectObject('monitors-changed', () => this.closePanel(), this);
        global.get_window_actors().forEach(actor => this._mapped(actor.meta_window));
    }

    destroy() {
        this.closePanel();
        for (const source of [global.window_manager, global.display, global.stage, Main.overview,
            Main.layoutManager, this._panel])
            source?.disconnectObject(this);
    }

    get isPanelOpen() {
        return this._panel !== null;
    }

    closePanel() {
        this._panel?.delete(global.get_current_time());
    }

    _mapped(window) {
        if (isOurs(window) && window.title === PANEL_TITLE)
            this._adopt(window);
        this._activate(window);
    }

    /** They open only at the user's request, so the shell need not ask whether to show them. */
    _activate(window) {
        if (isOurs(window))
            window.activate(global.get_current_time());
    }

    _adopt(panel) {
        this._panel = panel;
        this._wasFocused = false;
        panel.make_above();
        panel.connectObject(
            'size-changed', () => this._place(),
            'unmanaging', () => this._forget(panel), this);
        this._place();
        this._button.add_style_pseudo_class('active');
        // Without the animation of ordinary windows, which the shell starts after this signal.
        GLib.idle_add(GLib.PRIORITY_HIGH, () => {
            panel.get_compositor_private()?.remove_all_transitions();
            return GLib.SOURCE_REMOVE;
        });
    }

    _forget(panel) {
        panel.disconnectObject(this);
        if (this._panel === panel) {
            this._panel = null;
            this._button.remove_style_pseudo_class('active');
        }
    }

    /** Moves the panel beside the bar, centred on the text as far as the work area allows. */
    _place() {
        if (!this._button.has_allocation())
            return;
        const monitor = Main.layoutManager.findIndexForActor(this._button);
        const area = Main.layoutManager.getWorkAreaForMonitor(monitor);
        const gap = GAP * St.ThemeContext.get_for_stage(global.stage).scale_factor;
        const frame = this._panel.get_frame_rect();
        const [x, y] = this._button.middle;
        const first = area.x + gap;
        const last = area.x + area.width - gap - frame.width;
        const left = Math.max(first, Math.min(Math.round(x - frame.width / 2), last));
        const isBarAbove = y < area.y + area.height / 2;
        const top = isBarAbove ? area.y + gap : area.y + area.height - gap - frame.height;
        if (frame.x !== left || frame.y !== top)
            this._panel.move_frame(true, left, top);
    }

    /** Closes the panel when another window has taken its focus. */
    _focusChanged() {
        const focused = global.display.focus_window;
        if (this._panel && focused === this._panel)
            this._wasFocused = true;
        else if (this._panel && focused && this._wasFocused)
            this.closePanel();
    }

    /** Closes the panel when the user presses a button on the bar or the bare desktop. */
    _seen(event) {
        const type = event.type();
        const isPress = type === Clutter.EventType.BUTTON_PRESS || type === Clutter.EventType.TOUCH_BEGIN;
        if (this._panel && isPress) {
            const target = global.stage.get_event_actor(event);
            if (!this._button.contains(target) && !this._panel.get_compositor_private().contains(target))
                this.closePanel();
        }
        return Clutter.EVENT_PROPAGATE;
    }
}
