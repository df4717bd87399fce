"""An HTTPS server on 127.0.0.1:8443 that misbehaves as told: CERTIFICATE KEY MODE READY."""

import signal
import socket
import ssl
import sys
import time

certificate, key, mode, ready = sys.argv[1:]
signal.alarm(60)  # whatever becomes of the test


def reply(body, status="200 OK", headers=""):
    return f"HTTP/1.1 {status}\r\nContent-Length: {len(body)}\r\n{headers}\r\n".encode() + body


def serve(connection):
    request = connection.recv(65536)
    if mode == "good":
        connection.sendall(reply(b"203.0.113.7\n"))
    elif mode == "agent":
        lines = request.decode().split("\r\n")
        connection.sendall(reply("\n".join(x for x in lines if "User-Agent" in x).encode()))
    elif mode == "empty":
        connection.sendall(reply(b""))
    elif mode == "html":
        connection.sendall(reply(b"<html>Log in</html>", "503 Service Unavailable"))
    elif mode == "redirect":
        connection.sendall(reply(b"moved", "302 Found", "Location: https://127.0.0.1:8443/\r\n"))
    elif mode == "longest":
        connection.sendall(reply(b"x" * 4096))
    elif mode == "toolong":
        connection.sendall(reply(b"x" * 4097))
    elif mode == "flood":
        connection.sendall(b"HTTP/1.1 200 OK\r\n\r\n")
        while True:
            connection.sendall(b"x" * 65536)
    elif mode == "cutoff":
        connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n203.0.113.7")
    elif mode == "slow":
        for piece in reply(b"203.0.113.7"):
            connection.sendall(bytes([piece]))
            time.sleep(0.1)
    elif mode == "silent":
        time.sleep(60)
    # "nothing" just closes


context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(certificate, key)
listener = socket.create_server(("127.0.0.1", 8443))
open(ready, "w").close()
while True:
    plain, _ = listener.accept()
    try:
        with context.wrap_socket(plain, server_side=True) as encrypted:
            serve(encrypted)
    except OSError:
        pass
