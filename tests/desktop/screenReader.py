"""A screen reader's view of the windows."""

import json
import select
import subprocess
from pathlib import Path

from children import wait_until

_PROGRAM = ["/usr/bin/python3", str(Path(__file__).resolve().parent / "assistive.py")]

# For the session that a reader is used in.
VARIABLES = {"NO_AT_BRIDGE": "0", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}


# In seconds, for one answer.
_PATIENCE = 20


class ScreenReader:
    def __init__(self, session):
        self._program = session.start(_PROGRAM, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                      text=True)

    def close(self):
        for pipe in (self._program.stdin, self._program.stdout):
            pipe.close()

    def look(self, window=None):
        """The visible elements of all windows, or of the one with that title."""
        return [element for element in self._ask("look") or [] if window in (None, element["window"])]

    def names(self, window=None):
        return [element["name"] for element in self.look(window)]

    def find(self, role, title):
        """The first such element, or None."""
        return next((element for element in self.look()
                     if (element["role"], element["title"]) == (role, title)), None)

    def wait_to_find(self, role, title):
        return wait_until(lambda: self.find(role, title), 10, f"{role} {title}")

    def wait_to_read(self, beginning, seconds=10):
        """The first name that begins so."""
        return wait_until(lambda: next((name for name in self.names()
                                        if name.startswith(beginning)), None), seconds, beginning)

    def press(self, role, title):
        wait_until(lambda: self._ask("press", role, title), 10, f"{role} {title}")

    def _ask(self, *request):
        self._program.stdin.write(json.dumps(request) + "\n")
        self._program.stdin.flush()
        if not select.select([self._program.stdout], [], [], _PATIENCE)[0]:
            raise TimeoutError(f"no answer to {request} within {_PATIENCE} s")
        return json.loads(self._program.stdout.readline())
