"""GNOME's compositor without a screen. The shell itself is the display: it takes pictures, and moves a pointer
and presses keys of its own, through scripts that it evaluates."""

import json
import tempfile
from pathlib import Path

import pixbuf
from children import wait_until
from gi.repository import Gio, GLib

PROGRAMS = ["gnome-shell"]
SESSION_TYPE = "wayland"

# The compositor's own variables: how many screens stand side by side, and the scale of all of them.
SCREENS = "TIDEWELL_TEST_SCREENS"
SCALE = "TIDEWELL_TEST_SCALE"

_SOCKET = "wayland-0"
_BUTTONS = {1: "PRIMARY", 2: "MIDDLE", 3: "SECONDARY"}
_CALL = Gio.DBusCallFlags.NO_AUTO_START
_PATIENCE = 20_000  # milliseconds

# The times of events are in microseconds.
_DEVICES = """
const {Clutter, Meta, Shell, St} = imports.gi;
const now = () => imports.gi.GLib.get_monotonic_time();
if (!global.testDevices) {
  const seat = Clutter.get_default_backend().get_default_seat();
  global.testDevices = {
    pointer: seat.create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE),
    keyboard: seat.create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE),
  };
}
const {pointer, keyboard} = global.testDevices;
"""
_WINDOWS = """
global.get_window_actors().map(actor => actor.meta_window).filter(window => !window.is_override_redirect())
  .map(window => {
    const app = Shell.WindowTracker.get_default().get_window_app(window);
    return [window.title, window.get_wm_class(), app && !app.is_window_backed()];
  })
"""


class Display:
    def __init__(self, session, screen):
        self._session = session
        self._size = screen.split("x")[:2]
        self._bus = None
        self.scale = float(session.environment.get(SCALE, "1"))

    def start(self):
        # For the sockets of X servers.
        sockets = Path("/tmp/.X11-unix")
        if not sockets.exists():
            sockets.mkdir()
            sockets.chmod(0o1777)
        self._session.environment["TIDEWELL_TEST_MONITOR"] = "x".join(self._size)

    def arrive(self):
        """Connects to the shell once it runs, and passes its displays on to programs."""
        environment = self._session.environment
        flags = Gio.DBusConnectionFlags
        self._bus = Gio.DBusConnection.new_for_address_sync(
            environment["DBUS_SESSION_BUS_ADDRESS"],
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)
        environment["WAYLAND_DISPLAY"] = _SOCKET
        for file in Path(environment["XDG_RUNTIME_DIR"]).glob(".mutter-Xwaylandauth.*"):
            environment.update(XAUTHORITY=str(file), DISPLAY=self.evaluate("imports.gi.GLib.getenv('DISPLAY')"))

    def set_scale(self):
        """Sets the scale of all screens."""
        count, width = int(self._session.environment.get(SCREENS, "1")), int(self._size[0])
        command = ["gdctl", "set"]
        for index in range(count):
            command += ["--logical-monitor", "--monitor", f"Meta-{index}", "--scale", f"{self.scale:g}",
                        "--x", str(int(index * width / self.scale)), "--y", "0",
                        *(["--primary"] if index == 0 else [])]  # fmt: skip
        if self._session.output(command) is None:
            raise RuntimeError("the shell refuses the scale")

    def close(self):
        if self._bus:
            self._bus.close_sync()

    def evaluate(self, script):
        """The value of a script in the shell."""
        reply = self._call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval",
                           GLib.Variant("(s)", (script,)))  # fmt: skip
        if not reply[0]:
            raise RuntimeError(f"{script}: {reply[1]}")
        return json.loads(reply[1]) if reply[1] else None

    def evaluate_later(self, script):
        """The value with which a script in the shell calls done()."""
        self.evaluate("delete global.testDone; const done = value => { global.testDone = [value]; };" + script)
        return wait_until(lambda: self.evaluate("global.testDone"), 5, "end of the script")[0]

    def move(self, x, y):
        self.evaluate(_DEVICES + self._motion(x, y))

    def click(self, x, y, button=1):
        self.move(x, y)
        name = f"Clutter.BUTTON_{_BUTTONS[button]}"
        for state in ("PRESSED", "RELEASED"):
            self.evaluate(f"{_DEVICES}pointer.notify_button(now(), {name}, Clutter.ButtonState.{state})")

    def press_escape(self):
        self.press("Escape")

    def press(self, *keys):
        """Presses keys one after the other; "Control+Tab" is one of them."""
        for combined in keys:
            names = [f"Clutter.KEY_{name}" for name in combined.split("+")]
            for state, ordered in (("PRESSED", names), ("RELEASED", reversed(names))):
                for name in ordered:
                    self.evaluate(f"{_DEVICES}keyboard.notify_keyval(now(), {name}, Clutter.KeyState.{state})")

    def copied(self):
        """The clipboard's text, or None while it has none."""
        self.evaluate(_DEVICES + "delete global.testCopied;"
                      "St.Clipboard.get_default().get_text(St.ClipboardType.CLIPBOARD,"
                      "  (_, text) => { global.testCopied = [text]; });")  # fmt: skip
        return wait_until(lambda: self.evaluate("global.testCopied"), 5, "answer of the clipboard")[0]

    def windows(self):
        """Title, identity and whether there is an icon, of each window."""
        return [tuple(window) for window in self.evaluate(_DEVICES + _WINDOWS)]

    def take(self):
        """What the screen shows now, without the pointer."""
        with tempfile.NamedTemporaryFile(suffix=".png") as file:
            self._call("org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot",
                       "Screenshot", GLib.Variant("(bbs)", (False, False, file.name)))  # fmt: skip
            return pixbuf.load(file.name)

    def _motion(self, x, y):
        return f"pointer.notify_absolute_motion(now(), {x / self.scale}, {y / self.scale});"

    def _call(self, name, path, interface, method, arguments):
        return self._bus.call_sync(name, path, interface, method, arguments, None, _CALL, _PATIENCE, None).unpack()
