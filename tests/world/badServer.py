"""An HTTP/2 server that misbehaves: CERTIFICATE KEY PORT MODE.

Everything that a mode does not mention works.
"""

import select
import socket
import ssl
import sys
import threading
import time

import h2.config
import h2.connection
import h2.events
import h2.exceptions
import h2.settings

MODES = {
    "http1": "speaks no HTTP/2",
    "redirect": "sends everybody elsewhere",
    "headers": "never comes to the end of its headers",
    "silent": "accepts connections and says nothing",
    "stalls": "stops after a megabyte",
    "closes": "breaks off after a megabyte",
    "trickles": "sends ten bytes a second",
    "short": "announces a gigabyte and sends a megabyte",
    "tiny": "has a large download that is none",
    "hugeSmall": "has a small download that is none",
    "refuses": "takes no upload: 413",
    "early": "praises an upload at once and takes none",
    "disputes": "takes nearly all of an upload and finds it wrong",
}

BLOCK = bytes(16_384)
MEGABYTE = 1_000_000
# HTTP/2's initial window is hardly larger.
HUGE_SMALL = 65_000
DISPUTED = 99 * MEGABYTE
PROTOCOL_ERROR = 1
DATA = 0
END_OF_STREAM = 1
LARGEST_WINDOW = (1 << 31) - 1


class Uploads:
    """Removes uploaded data from a connection's bytes, much faster than the library."""

    def __init__(self):
        self.taken = {}  # by stream
        self._passed = len("PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n")  # as much goes to the library
        self._skipped, self._stream = 0, 0
        self._head = b""

    def take(self, data):
        """Returns everything but uploaded data. Of an upload's last frame it returns only the head."""
        left = bytearray()
        view = memoryview(data)
        while view:
            if self._skipped:
                self.taken[self._stream] = self.taken.get(self._stream, 0) + len(view[:self._skipped])
                view, self._skipped = view[self._skipped:], max(0, self._skipped - len(view))
            elif self._passed:
                left += view[:self._passed]
                view, self._passed = view[self._passed:], max(0, self._passed - len(view))
            else:
                missing = 9 - len(self._head)
                self._head, view = self._head + bytes(view[:missing]), view[missing:]
                if len(self._head) == 9:
                    left += self._begin(self._head)
                    self._head = b""
        return bytes(left)

    def _begin(self, head):
        length, kind, flags = int.from_bytes(head[:3], "big"), head[3], head[4]
        if kind != DATA:
            self._passed = length
            return head
        self._skipped, self._stream = length, int.from_bytes(head[5:], "big")
        return bytes(3) + head[3:] if flags & END_OF_STREAM else b""


class Connection:
    def __init__(self, channel, mode):
        self.channel, self.mode = channel, mode
        self.http = h2.connection.H2Connection(
            h2.config.H2Configuration(client_side=False, header_encoding="utf-8"))
        self.large = {}  # stream -> bytes that are still to be sent; negative for a trickle
        self.posts = set()
        self.uploads = Uploads() if mode == "disputes" else None
        self.last_trickle = 0.0

    def serve(self):
        self.http.initiate_connection()
        self.http.increment_flow_control_window(1 << 24)
        if self.uploads:
            self.widen()
        self.flush()
        while True:
            pause = 0 if any(self.sendable(stream) for stream in self.large) else 0.05
            if self.channel.pending() or select.select([self.channel], [], [], pause)[0]:
                data = self.channel.recv(65_536)
                if not data:
                    return
                if self.uploads:
                    data = self.uploads.take(data)
                    self.dispute()
                for event in self.http.receive_data(data):
                    self.hear(event)
            self.send_large()
            self.flush()

    def hear(self, event):
        if isinstance(event, h2.events.RequestReceived):
            headers = dict(event.headers)
            self.answer(event.stream_id, headers[":method"], headers[":path"])
        elif isinstance(event, h2.events.DataReceived):
            self.http.acknowledge_received_data(event.flow_controlled_length, event.stream_id)
        elif isinstance(event, h2.events.StreamEnded) and event.stream_id in self.posts:
            self.reply(event.stream_id, "200", b"ok")
        elif isinstance(event, h2.events.StreamReset):
            self.large.pop(event.stream_id, None)

    def widen(self):
        """Opens the largest windows for uploads."""
        code = h2.settings.SettingCodes.INITIAL_WINDOW_SIZE
        self.http.update_settings({code: LARGEST_WINDOW})
        self.http.increment_flow_control_window(LARGEST_WINDOW - (1 << 24) - (1 << 16))

    def dispute(self):
        for stream in [one for one, taken in self.uploads.taken.items() if taken >= DISPUTED]:
            del self.uploads.taken[stream]
            self.posts.discard(stream)
            self.http.reset_stream(stream, PROTOCOL_ERROR)
            print("disputed", flush=True)

    def answer(self, stream, method, path):
        if self.mode == "redirect":
            self.reply(stream, "302", b"", ("location", "https://speed.example:8443/elsewhere"))
        elif self.mode == "headers":
            self.send_endless_headers(stream)
        elif method == "POST" and self.mode == "refuses":
            self.reply(stream, "413", b"too much")
        elif method == "POST" and self.mode == "early":
            self.reply(stream, "200", b"ok")
            self.http.reset_stream(stream, 0)
        elif method == "POST":
            self.posts.add(stream)
        elif path == "/small":
            self.reply(stream, "200", b"x" * (HUGE_SMALL if self.mode == "hugeSmall" else 10))
        elif self.mode == "tiny":
            self.reply(stream, "200", b"large")
        else:
            self.begin_large(stream)

    def begin_large(self, stream):
        announced = 1000 * MEGABYTE
        amount = MEGABYTE if self.mode in ("stalls", "closes", "short") else announced * 10
        self.http.send_headers(stream, [(":status", "200"), ("content-length", str(announced))])
        self.large[stream] = -1 if self.mode == "trickles" else amount

    def reply(self, stream, status, body, *headers):
        fields = [(":status", status), ("content-length", str(len(body))), *headers]
        self.http.send_headers(stream, fields, end_stream=not body)
        while body:
            self.http.send_data(stream, body[:16_000], end_stream=len(body) <= 16_000)
            body = body[16_000:]

    def sendable(self, stream):
        left = self.large[stream]
        window = min(self.http.local_flow_control_window(stream), self.http.max_outbound_frame_size)
        return 0 if left <= 0 else min(left, window)

    def send_large(self):
        for stream in list(self.large):
            size = self.sendable(stream)
            if size:
                self.http.send_data(stream, BLOCK[:size])
                self.large[stream] -= size
            elif self.large[stream] < 0 and time.monotonic() > self.last_trickle + 0.1:
                self.http.send_data(stream, b"x")
                self.last_trickle = time.monotonic()
            elif self.large[stream] == 0 and self.mode == "closes":
                raise ConnectionAbortedError
            elif self.large[stream] == 0 and self.mode == "short":
                del self.large[stream]
                self.http.end_stream(stream)

    def send_endless_headers(self, stream):
        """Sends a header without end: continuation frames with literals of a kilobyte each."""
        def frame(kind, flags, payload):
            head = len(payload).to_bytes(3, "big") + bytes([kind, flags])
            return head + stream.to_bytes(4, "big") + payload

        self.flush()
        length = b"\x7f\x81\x07"  # 1024, as header compression writes it
        field = b"\x00\x01x" + length + b"y" * 1024
        self.channel.sendall(frame(1, 0, b"\x88" + field))  # :status 200, and no end of headers
        while True:
            self.channel.sendall(frame(9, 0, field))

    def flush(self):
        data = self.http.data_to_send()
        if data:
            self.channel.sendall(data)


def serve(plain, context, mode):
    try:
        with context.wrap_socket(plain, server_side=True) as channel:
            if mode == "http1":
                channel.recv(65_536)
                channel.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n1234567890")
            elif mode == "silent":
                time.sleep(600)
            else:
                channel.settimeout(60)
                Connection(channel, mode).serve()
    except (OSError, h2.exceptions.ProtocolError):
        pass


def main(certificate, key, port, mode):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate, key)
    if mode != "http1":
        context.set_alpn_protocols(["h2"])
    listener = socket.create_server(("", int(port)), backlog=64)
    while True:
        plain, _ = listener.accept()
        threading.Thread(target=serve, args=(plain, context, mode), daemon=True).start()


if __name__ == "__main__":
    main(*sys.argv[1:])
