#!/usr/bin/python3
"""A machine full of programs and connections, for tests and measurements.

    crowd.py serve ADDRESS PORT              takes every connection and reads what comes
    crowd.py connect ADDRESS PORT N ACTIVE   makes N connections; ACTIVE of them say something, again
                                             and again
    crowd.py datagrams ADDRESS PORT N ACTIVE the same with UDP sockets
    crowd.py burst ADDRESS PORT N            opens N UDP sockets, each of which sends 100 bytes once, and
                                             keeps them
    crowd.py churn ADDRESS PORT              connects, says something and closes, without end
    crowd.py opening SECONDS                 opens and closes a UDP socket, again and again, and
                                             prints the median microseconds that takes
    crowd.py gather PROCESSES FILES          processes with so many raw sockets each, all of which receive
                                             every packet of the protocol for experiments
    crowd.py call ADDRESS                    sends one packet of this protocol
    crowd.py tunnel ADDRESS PORT             a VPN's client: what goes to tun0 it sends on in datagrams
    crowd.py echo ADDRESS PORT               sends back every datagram
    crowd.py ask ADDRESS PORT SECONDS        sends 64 bytes to it, again and again, and prints the
                                             median microseconds until they are back
    crowd.py idle PROCESSES FILES            processes that do nothing, each with so many open files
    crowd.py many COUNT COMMAND...           runs a command so often, all at once, and prints what
                                             they print

Those that do not end say "ready" when they are.
"""

import fcntl
import os
import resource
import selectors
import signal
import socket
import struct
import subprocess
import sys
import time


EXPERIMENT = 253  # RFC 3692


def serve(address, port):
    family = socket.AF_INET6 if ":" in address else socket.AF_INET
    listener = socket.create_server((address, int(port)), family=family, backlog=4096,
                                    dualstack_ipv6=address == "::")
    listener.setblocking(False)
    selector = selectors.DefaultSelector()
    selector.register(listener, selectors.EVENT_READ)
    print("ready", flush=True)
    while True:
        for key, _ in selector.select():
            if key.fileobj is listener:
                connection, _ = listener.accept()
                selector.register(connection, selectors.EVENT_READ)
                continue
            try:
                is_open = key.fileobj.recv(1 << 20)
            except OSError:
                is_open = False
            if not is_open:
                selector.unregister(key.fileobj)
                key.fileobj.close()


def talk(sockets, active):
    print("ready", flush=True)
    # Each of them sends in every second.
    pause = 0.1 if active <= 1000 else 0.5
    while True:
        began = time.monotonic()
        for each in sockets[:active]:
            each.send(b"x" * 100)
        time.sleep(max(0.0, pause + began - time.monotonic()))


def connect(address, port, count, active):
    talk([socket.create_connection((address, int(port))) for _ in range(int(count))], int(active))


def datagrams(address, port, count, active):
    sockets = [socket.socket(socket.AF_INET, socket.SOCK_DGRAM) for _ in range(int(count))]
    for each in sockets:
        each.connect((address, int(port)))
    talk(sockets, int(active))


def burst(address, port, count):
    resource.setrlimit(resource.RLIMIT_NOFILE, (int(count) + 100, int(count) + 100))
    sockets = []
    for _ in range(int(count)):
        sockets.append(socket.socket(socket.AF_INET, socket.SOCK_DGRAM))
        sockets[-1].sendto(bytes(100), (address, int(port)))
    print("ready", flush=True)
    signal.pause()


def churn(address, port):
    print("ready", flush=True)
    while True:
        with socket.create_connection((address, int(port))) as connection:
            # Without TIME_WAIT, which would use up the ports.
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\1\0\0\0\0\0\0\0")
            connection.send(b"x" * 100)


def gather(processes, files):
    hold(processes, files, lambda: socket.socket(socket.AF_INET, socket.SOCK_RAW, EXPERIMENT))


def call(address):
    with socket.socket(socket.AF_INET, socket.SOCK_RAW, EXPERIMENT) as here:
        here.sendto(b"x", (address, 0))


def opening(seconds):
    os.sched_setaffinity(0, {0})
    took = []
    end = time.perf_counter() + float(seconds)
    before = 0.0
    while before < end:
        before = time.perf_counter()
        socket.socket(socket.AF_INET, socket.SOCK_DGRAM).close()
        took.append(time.perf_counter() - before)
    print(1e6 * sorted(took)[len(took) // 2])


def tunnel(address, port):
    device = os.open("/dev/net/tun", os.O_RDWR)
    fcntl.ioctl(device, 0x400454CA, struct.pack("16sH22x", b"tun0", 0x1001))  # TUNSETIFF
    outside = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    outside.connect((address, int(port)))
    print("ready", flush=True)
    while True:
        outside.send(os.read(device, 65536))


def echo(address, port):
    # On the same processor as `ask`, so that it does not sleep in between.
    os.sched_setaffinity(0, {0})
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as here:
        here.bind((address, int(port)))
        print("ready", flush=True)
        while True:
            here.sendto(*here.recvfrom(2048))


def ask(address, port, seconds):
    os.sched_setaffinity(0, {0})
    took = []
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as here:
        here.connect((address, int(port)))
        end = time.perf_counter() + float(seconds)
        before = 0.0
        while before < end:
            before = time.perf_counter()
            here.send(b"x" * 64)
            here.recv(2048)
            took.append(time.perf_counter() - before)
    print(1e6 * sorted(took)[len(took) // 2])


def idle(processes, files):
    hold(processes, files, lambda: open("/dev/null", "rb"))


def hold(processes, files, make):
    children = []
    for _ in range(int(processes)):
        ready, told = os.pipe()
        child = os.fork()
        if child == 0:
            signal.signal(signal.SIGTERM, signal.SIG_DFL)
            held = [make() for _ in range(int(files))]  # noqa: F841
            os.close(told)
            os.close(ready)
            signal.pause()
        os.close(told)
        os.read(ready, 1)  # until the child has closed its end
        os.close(ready)
        children.append(child)
    print("ready", flush=True)
    try:
        signal.pause()
    finally:
        for child in children:
            os.kill(child, signal.SIGKILL)
        for child in children:
            os.waitpid(child, 0)


def many(count, *command):
    children = [subprocess.Popen(command, stdout=subprocess.PIPE, close_fds=False)
                for _ in range(int(count))]
    for child in children:
        sys.stdout.buffer.write(child.communicate()[0])


if __name__ == "__main__":
    signal.signal(signal.SIGTERM, lambda *_: sys.exit())
    verbs = {verb.__name__: verb for verb in (
        serve, connect, datagrams, burst, churn, opening, gather, call, tunnel, echo, ask, idle,
        many)}
    verbs[sys.argv[1]](*sys.argv[2:])
