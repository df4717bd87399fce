#!/usr/bin/python3
"""A window of another program, without a title bar, which would change with the focus: otherWindow.py WIDTH HEIGHT."""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk  # noqa: E402

window = Gtk.Window(title="Other", decorated=False, default_width=int(sys.argv[1]),
                    default_height=int(sys.argv[2]))  # fmt: skip
window.connect("destroy", Gtk.main_quit)
window.show_all()
Gtk.main()
