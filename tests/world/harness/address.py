"""The service in the net that tells the user's machine its public address."""

import pathlib

from .quality import Authority
from .world import PROBED, USER

NAME = "api.ipify.org"


class AddressService:
    """nghttpd under the name of the address service. It ends with `process`."""

    def __init__(self, world, folder, start):
        """`start` runs a command in a namespace of the world; the folder is the caller's."""
        self.authority = Authority(folder, [NAME])
        (pathlib.Path(folder) / "index.html").write_text(USER)
        self.process = start("net", "nghttpd", "-d", folder, "443", self.authority.key,
                             self.authority.server_certificate)
        hosts = pathlib.Path(f"/etc/netns/tidewell-{world.name}-user/hosts")
        known = hosts.read_text() if hosts.exists() else "127.0.0.1 localhost\n"
        hosts.write_text(f"{known}{PROBED} {NAME}\n")
