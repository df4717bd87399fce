"""The windows of an X session as its window manager keeps them."""

import re
from collections import namedtuple

Window = namedtuple("Window", "number title identity state")

_ROOT = ["xprop", "-root", "-notype"]
_TEXT = re.compile(r'"([^"]*)"')


class XWindows:
    def __init__(self, session):
        self._session = session

    def stacked(self):
        """The ordinary windows, the lowest first."""
        listed = [self._window(number) for number in self._numbers("_NET_CLIENT_LIST_STACKING")]
        return [window for window in listed if window]

    def titles(self):
        return [window.title for window in self.stacked()]

    def active(self):
        """The title of the window that has the keyboard, or None."""
        number = next(iter(self._numbers("_NET_ACTIVE_WINDOW")), None)
        return next((window.title for window in self.stacked() if window.number == number), None)

    def titled(self, title):
        """The only window of that title, or None."""
        found = [window for window in self.stacked() if window.title == title]
        return found[0] if len(found) == 1 else None

    def minimise(self, title):
        self._session.output(["xdotool", "windowminimize", self.titled(title).number])

    def _numbers(self, name):
        text = self._session.output([*_ROOT, name]) or ""
        return [number for number in re.findall(r"0x[0-9a-f]+", text) if number != "0x0"]

    def _window(self, number):
        """None for a closed window, and for bars."""
        names = ["_NET_WM_NAME", "WM_CLASS", "_NET_WM_STATE", "_NET_WM_WINDOW_TYPE"]
        text = self._session.output(["xprop", "-id", number, "-notype", *names])
        if not text or "_NET_WM_WINDOW_TYPE_NORMAL" not in text:
            return None
        title, identity, state, _ = text.splitlines()
        return Window(number, *_TEXT.findall(title), tuple(_TEXT.findall(identity)),
                      re.findall(r"_NET_WM_STATE_(\w+)", state))
