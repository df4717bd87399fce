"""The servers in the net: for speed tests, and for the public address."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile

from .session import wait_until
from .world import _BUILD, PROBED, USER

HELPER = os.environ.get("TIDEWELL_NETWORK_QUALITY",
                        str(_BUILD / "libexec" / "tidewell" / "networkQuality"))
HOST = "speed.example"
ADDRESS = "9.9.9.9"
PORT = 8443
LARGE_BYTES = 8_000_000_000
# On a disk, the first read of the large file fills the page cache, which limits the server to less than a
# gigabit a second. A file system in memory does not.
_FOLDERS = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


def document(port=PORT, host=HOST, **changes):
    """A configuration document, as text."""
    base = f"https://{host}:{port}"
    urls = {"large_download_url": f"{base}/large", "small_download_url": f"{base}/small",
            "upload_url": f"{base}/upload"}
    return json.dumps({"version": 1, "urls": {**urls, **changes}})


class Authority:
    """Certificates of a test's own: a P-256 key for HOST, signed by an authority."""

    def __init__(self, folder, names=(HOST,)):
        self.folder = pathlib.Path(folder)
        self.certificate = self.folder / "ca.pem"
        self.server_certificate, self.key = self.folder / "server.pem", self.folder / "server.key"
        curve = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"]
        self._openssl("req", "-x509", *curve, "-keyout", "ca.key", "-out", "ca.pem", "-days", "2",
                      "-subj", "/CN=authority of the test")
        self._openssl("req", *curve, "-keyout", "server.key", "-out", "server.csr",
                      "-subj", f"/CN={names[0]}")
        alternatives = ",".join(f"DNS:{name}" for name in names)
        (self.folder / "server.ext").write_text(f"subjectAltName={alternatives}\n")
        self._openssl("x509", "-req", "-in", "server.csr", "-CA", "ca.pem", "-CAkey", "ca.key",
                      "-CAcreateserial", "-days", "2", "-extfile", "server.ext",
                      "-out", "server.pem")

    def _openssl(self, *arguments):
        subprocess.run(["openssl", *arguments], cwd=self.folder, check=True, capture_output=True)


class QualityServer:
    """nghttpd in the net. It answers with files and discards uploads."""

    def __init__(self, world, start=True):
        self.world = world
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quality", dir=_FOLDERS))
        self.authority = Authority(self.folder)
        self.documents = self.folder / "documents"
        self.documents.mkdir()
        with open(self.documents / "large", "wb") as large:
            large.truncate(LARGE_BYTES)
        (self.documents / "small").write_text("1234567890")
        (self.documents / "upload").write_text("ok")
        (self.documents / "configuration").write_text(document())
        self.name_host(ADDRESS)
        # As responsive servers do: data waiting in a socket delays every later reply.
        world.run("net", "sysctl", "-qw", "net.ipv4.tcp_notsent_lowat=16384")
        self.process = None
        if start:
            self.start()

    def start(self):
        self.process = self.world.start(
            "net", "nghttpd", "-d", self.documents, "-w", "24", "-W", "26", "-n", "1", PORT,
            self.authority.key, self.authority.server_certificate, stdout=subprocess.DEVNULL)
        self.wait_for(PORT)

    def wait_for(self, port):
        wait_until(lambda: f":{port} " in self.world.run("net", "ss", "-ltnH"), 5, "the server")

    def name_host(self, address):
        """Resolves HOST to the address on the user's machine, or to nothing if it is empty."""
        hosts = pathlib.Path(f"/etc/netns/tidewell-{self.world.name}-user/hosts")
        hosts.write_text(f"127.0.0.1 localhost\n{address} {HOST}\n" if address else "")

    def environment(self, port=PORT, path="configuration"):
        """The helper's environment."""
        return {"PATH": os.environ["PATH"], "HOME": str(self.folder), "LANG": "de_DE.UTF-8",
                "TIDEWELL_SPEEDTEST_CONFIG": f"https://{HOST}:{port}/{path}",
                "SSL_CERT_FILE": str(self.authority.certificate),
                **{key: value for key, value in os.environ.items()
                   if key.endswith("SAN_OPTIONS")}}

    def close(self):
        if self.process:
            self.process.kill()
            self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


class AddressService:
    """nghttpd under the name of the service that answers with the public address."""

    NAME = "api.ipify.org"

    def __init__(self, world, folder, start):
        """`start` runs a command in a namespace of the world. The caller ends `process`."""
        self.authority = Authority(folder, [self.NAME])
        (pathlib.Path(folder) / "index.html").write_text(USER)
        self.process = start("net", "nghttpd", "-d", folder, "443", self.authority.key,
                             self.authority.server_certificate)
        hosts = pathlib.Path(f"/etc/netns/tidewell-{world.name}-user/hosts")
        known = hosts.read_text() if hosts.exists() else "127.0.0.1 localhost\n"
        hosts.write_text(f"{known}{PROBED} {self.NAME}\n")
