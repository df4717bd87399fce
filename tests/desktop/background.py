"""The background of an X screen, for those who clear to it and those who compose over it."""

import ctypes
import ctypes.util

_RETAIN_PERMANENT = 1
_REPLACE = 0
_PIXMAP = 20  # the type, among the predefined atoms


def paint(display, colour):
    """`display` is a name such as ":0", `colour` a number such as 0x20303c."""
    x = ctypes.CDLL(ctypes.util.find_library("X11"))
    x.XOpenDisplay.restype = ctypes.c_void_p
    for function in (x.XDefaultRootWindow, x.XInternAtom, x.XCreatePixmap):
        function.restype = ctypes.c_ulong
    x.XDefaultGC.restype = ctypes.c_void_p
    connection = ctypes.c_void_p(x.XOpenDisplay(display.encode()))
    screen = x.XDefaultScreen(connection)
    root = ctypes.c_ulong(x.XDefaultRootWindow(connection))
    graphics = ctypes.c_void_p(x.XDefaultGC(connection, screen))
    size = (x.XDisplayWidth(connection, screen), x.XDisplayHeight(connection, screen))
    depth = x.XDefaultDepth(connection, screen)
    pixmap = ctypes.c_ulong(x.XCreatePixmap(connection, root, *size, depth))
    x.XSetForeground(connection, graphics, ctypes.c_ulong(colour))
    x.XFillRectangle(connection, pixmap, graphics, 0, 0, *size)
    x.XSetWindowBackgroundPixmap(connection, root, pixmap)
    x.XClearWindow(connection, root)
    # Compositors find the picture by this name. It remains after this process has ended.
    name = ctypes.c_ulong(x.XInternAtom(connection, b"_XROOTPMAP_ID", 0))
    x.XChangeProperty(connection, root, name, ctypes.c_ulong(_PIXMAP), 32, _REPLACE,
                      ctypes.byref(pixmap), 1)
    x.XSetCloseDownMode(connection, _RETAIN_PERMANENT)
    x.XCloseDisplay(connection)
