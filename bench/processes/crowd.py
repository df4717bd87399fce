"""A machine full of connections, for measurements: crowd.py connect|serve|idle ...

    crowd.py serve ADDRESS PORT            takes every connection and reads what comes
    crowd.py connect ADDRESS PORT N ACTIVE makes N connections; ACTIVE of them say something, again
                                           and again, each ten times a second at the most
    crowd.py idle PROCESSES FILES          processes that do nothing, each with so many open files

Each says "ready" when it is.
"""

import os
import selectors
import signal
import socket
import sys
import time


def serve(address, port):
    listener = socket.create_server((address, int(port)), backlog=4096)
    listener.setblocking(False)
    selector = selectors.DefaultSelector()
    selector.register(listener, selectors.EVENT_READ)
    print("ready", flush=True)
    while True:
        for key, _ in selector.select():
            if key.fileobj is listener:
                connection, _ = listener.accept()
                selector.register(connection, selectors.EVENT_READ)
            elif not key.fileobj.recv(65536):
                selector.unregister(key.fileobj)
                key.fileobj.close()


def connect(address, port, count, active):
    connections = [socket.create_connection((address, int(port))) for _ in range(int(count))]
    talking = connections[:int(active)]
    print("ready", flush=True)
    while True:
        began = time.monotonic()
        for connection in talking:
            connection.send(b"x" * 100)
        time.sleep(max(0.0, 0.1 + began - time.monotonic(), 0.5 if len(talking) > 1000 else 0))


def idle(processes, files):
    for _ in range(int(processes)):
        if os.fork() == 0:
            held = [open("/dev/null") for _ in range(int(files))]  # noqa: F841
            signal.pause()
    print("ready", flush=True)
    try:
        signal.pause()
    finally:
        os.killpg(0, signal.SIGKILL)


if __name__ == "__main__":
    signal.signal(signal.SIGTERM, lambda *_: sys.exit())
    {"serve": serve, "connect": connect, "idle": idle}[sys.argv[1]](*sys.argv[2:])
