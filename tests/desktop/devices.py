"""A pointer and a keyboard of one's own in a Wayland compositor, spoken to in its wire protocol."""

import itertools
import os
import socket
import struct
import time

_DISPLAY, _REGISTRY, _CALLBACK = 1, 2, 3
# The kernel's numbers of the first, the middle and the second button, as X numbers them.
_BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}
# The kernel's numbers of the keys, by their names in X.
_KEYS = {"Escape": 1, "Tab": 15, "Return": 28, "space": 57, "Up": 103, "Left": 105, "Right": 106,
         "Down": 108}  # fmt: skip
# Key codes of a keymap are the kernel's numbers and this.
_OFFSET = 8

_SEAT = "wl_seat"
_POINTERS = "zwlr_virtual_pointer_manager_v1"
_KEYBOARDS = "zwp_virtual_keyboard_manager_v1"

_KEYMAP = f"""xkb_keymap {{
xkb_keycodes {{ minimum = 8; maximum = 255;
{"".join(f"<K{number}> = {number + _OFFSET};" for number in _KEYS.values())} }};
xkb_types {{ include "complete" }};
xkb_compatibility {{ include "complete" }};
xkb_symbols {{ {"".join(f"key <K{number}> {{ [ {name} ] }};" for name, number in _KEYS.items())} }};
}};\0""".encode()


class Devices:
    """They stay plugged in until `close`, as a user's do."""

    def __init__(self, path, width, height):
        self._size = (width, height)
        self._socket = socket.socket(socket.AF_UNIX)
        try:
            self._socket.connect(path)
            self._socket.settimeout(10)
            self._plug_in()
        except OSError:
            self.close()
            raise

    def close(self):
        self._socket.close()

    def move(self, x, y):
        self._send(self._pointer, 1, struct.pack("=IIIII", _now(), x, y, *self._size))
        self._send(self._pointer, 4)

    def click(self, x, y, button=1):
        self.move(x, y)
        time.sleep(0.05)
        for state in (1, 0):
            self._send(self._pointer, 2, struct.pack("=III", _now(), _BUTTONS[button], state))
            self._send(self._pointer, 4)

    def press(self, *keys):
        for key in keys:
            for state in (1, 0):
                self._send(self._keyboard, 1, struct.pack("=III", _now(), _KEYS[key], state))

    def _plug_in(self):
        self._send(_DISPLAY, 1, struct.pack("=I", _REGISTRY))
        offered = self._offered()
        # Objects must be numbered in the order of their creation.
        numbers = itertools.count(_CALLBACK + 1)
        made = {}
        for interface in (_SEAT, _POINTERS, _KEYBOARDS):
            made[interface] = next(numbers)
            described = _text(interface) + struct.pack("=II", 1, made[interface])
            self._send(_REGISTRY, 0, struct.pack("=I", offered[interface]) + described)
        self._pointer, self._keyboard = next(numbers), next(numbers)
        self._send(made[_POINTERS], 0, struct.pack("=II", made[_SEAT], self._pointer))
        self._send(made[_KEYBOARDS], 0, struct.pack("=II", made[_SEAT], self._keyboard))
        self._give_keymap()

    def _send(self, target, request, arguments=b"", descriptors=()):
        head = struct.pack("=IHH", target, request, 8 + len(arguments))
        socket.send_fds(self._socket, [head + arguments], list(descriptors))

    def _offered(self):
        """The names of the compositor's interfaces, as numbers."""
        self._send(_DISPLAY, 0, struct.pack("=I", _CALLBACK))
        found = {}
        for sender, content in self._messages():
            if sender == _CALLBACK:
                return found
            if sender == _REGISTRY:
                name, length = struct.unpack_from("=II", content)
                found[content[8 : 8 + length - 1].decode()] = name
        raise ConnectionError("the compositor has hung up")

    def _messages(self):
        data = b""
        while True:
            while len(data) < 8 or len(data) < struct.unpack_from("=IHH", data)[2]:
                piece = self._socket.recv(4096)
                if not piece:
                    return
                data += piece
            sender, _, length = struct.unpack_from("=IHH", data)
            yield sender, data[8:length]
            data = data[length:]

    def _give_keymap(self):
        file = os.memfd_create("keymap")
        os.write(file, _KEYMAP)
        self._send(self._keyboard, 0, struct.pack("=II", 1, len(_KEYMAP)), [file])
        os.close(file)


def _text(text):
    content = text.encode() + b"\0"
    return struct.pack("=I", len(content)) + content + b"\0" * (-len(content) % 4)


def _now():
    return int(time.monotonic() * 1000) & 0xFFFFFFFF
