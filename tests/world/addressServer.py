#!/usr/bin/python3
"""Answers every request with the address that it came from: addressServer.py HOST CERTIFICATE KEY

Requests from the tunnels' addresses came through a VPN, whose end in the net has a public address.
"""

import http.server
import ssl
import sys

BEHIND_TUNNELS = "192.0.2.8"


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        address = self.client_address[0]
        body = (BEHIND_TUNNELS if address.startswith("10.") else address).encode()
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)


def main():
    host, certificate, key = sys.argv[1:]
    server = http.server.ThreadingHTTPServer((host, 443), Handler)
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(certificate, key)
    server.socket = context.wrap_socket(server.socket, server_side=True, do_handshake_on_connect=False)
    server.serve_forever()


main()
