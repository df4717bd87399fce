"""Another monitor's start: its configuration, its terminal, and where what it prints goes."""

import fcntl
import os
import pathlib
import pty
import struct
import subprocess
import termios
import threading


def prepare(here, each):
    """Writes its configuration; gives back the folder."""
    folder = pathlib.Path(here.environment["XDG_CONFIG_HOME"])
    for name, text in each.files.items():
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(text.replace("{0}", str(here.folder)))
    return folder


def _words(command, folder):
    return [word.replace("{}", str(folder)) for word in command]


def start(here, each, folder):
    """The process, and the file that what it prints goes to."""
    output = here.folder / "printed"
    command = _words(each.command, folder)
    if each.terminal:
        here.environment["TERM"] = "xterm-256color"
        ours, theirs = _terminal()
        child = here.start("program", command, stdin=theirs, stdout=theirs, stderr=theirs)
        os.close(theirs)
        threading.Thread(target=_drain, args=(ours, output.open("wb")), daemon=True).start()
        return child, output
    with output.open("wb") as file:
        return here.start("program", command, stdout=file, stderr=subprocess.STDOUT), output


def ask(here, each, folder):
    """What its other program prints, or another run of it."""
    return here.run(["sh", "-c", 'timeout "$@" 2>/dev/null; true', "sh", str(each.ask_seconds),
                     *_words(each.ask, folder)]) or ""


def _terminal():
    """Both ends of a terminal of 80 columns and 24 lines."""
    ours, theirs = pty.openpty()
    fcntl.ioctl(ours, termios.TIOCSWINSZ, struct.pack("4H", 24, 80, 0, 0))
    return ours, theirs


def _drain(descriptor, file):
    """Until the program on the other side has ended."""
    with file:
        try:
            while data := os.read(descriptor, 65536):
                file.write(data)
                file.flush()
        except OSError:
            os.close(descriptor)
