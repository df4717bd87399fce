#!/usr/bin/env python3
"""Answers what speedtest-cli asks its servers."""

import http.server
import re
import socketserver
import sys
import urllib.parse

NAME = "www.speedtest.net"

CONFIGURATION = b"""<?xml version="1.0" encoding="UTF-8"?>
<settings>
<client ip="203.0.113.2" lat="0.0" lon="0.0" isp="test" isprating="3" country="XX"/>
<server-config threadcount="4" ignoreids="" notonmap="" forcepingid="" preferredserverid=""/>
<download testlength="10" initialtest="250K" mintestsize="250K" threadsperurl="4"/>
<upload testlength="10" ratio="5" initialtest="0" mintestsize="32K" threads="2" maxchunksize="512K"
 maxchunkcount="50" threadsperurl="4"/>
</settings>
"""

SERVERS = f"""<?xml version="1.0" encoding="UTF-8"?>
<settings><servers>
<server url="http://{NAME}/speedtest/upload.php" lat="0.0" lon="0.0" name="Net" country="World"
 cc="XX" sponsor="Test" id="1" host="{NAME}:80"/>
</servers></settings>
""".encode()

# A square picture of so many pixels a side, of about two bytes each.
PICTURE = re.compile(r"/random(\d+)x\d+\.jpg$")
PIECE = bytes(65536)


class Answers(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        path = urllib.parse.urlsplit(self.path).path
        picture = PICTURE.search(path)
        if picture:
            self.send(int(picture[1]) ** 2 * 2)
        elif path.endswith("latency.txt"):
            self.answer(b"test=test\n")
        elif "config" in path:
            self.answer(CONFIGURATION)
        else:
            self.answer(SERVERS)

    def do_POST(self):
        left = size = int(self.headers["Content-Length"])
        while left > 0:
            piece = self.rfile.read(min(left, len(PIECE)))
            if not piece:
                return
            left -= len(piece)
        self.answer(f"size={size}".encode())

    def head(self, size):
        self.send_response(200)
        self.send_header("Content-Length", str(size))
        self.end_headers()

    def answer(self, body):
        self.head(len(body))
        self.wfile.write(body)

    def send(self, size):
        self.head(size)
        try:
            for offset in range(0, size, len(PIECE)):
                self.wfile.write(PIECE[:size - offset])
        except OSError:
            pass  # it has measured long enough

    def log_message(self, *_):
        pass


class Server(socketserver.ThreadingTCPServer):
    # The HTTP library's own server looks up its name before it listens.
    allow_reuse_address = daemon_threads = True


Server((sys.argv[1], 80), Answers).serve_forever()
