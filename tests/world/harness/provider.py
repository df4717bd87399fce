"""What a network gives its users: addresses, routes and DNS by dnsmasq, and the way into the net."""

import pathlib

from . import world as worlds
from .machine import Machine
from .quality import AddressService, Authority
from .session import wait_until

SERVER = pathlib.Path(worlds.SCRIPT).parent / "addressServer.py"
SERVER_ADDRESS = "9.9.9.9"

# The user's public address by the gateway of its network.
PUBLIC = {"192.168.1.1": "198.51.100.11", "192.168.1.254": "198.51.100.12", "192.168.2.1": "198.51.100.13"}

FIRST = "192.168.1.1"

# Renewed every few seconds, so that changes arrive soon.
_DNSMASQ = """
no-hosts
no-resolv
no-ping
log-facility=-
bind-dynamic
user=root
interface=lan0
interface=lan1
dhcp-authoritative
dhcp-ignore-clid
dhcp-leasefile=/run/leases
address=/{name}/{server}
"""
_IPV4 = """
dhcp-range=set:lan{link},192.168.{net}.50,192.168.{net}.50,2m
dhcp-option=tag:lan{link},option:router,{gateway}
dhcp-option=tag:lan{link},option:dns-server,{dns}
dhcp-option=option:T1,4
dhcp-option=option:T2,100
"""
_IPV6 = """
enable-ra
dhcp-range=::,constructor:lan{link},ra-only,64,2m
ra-param=lan{link},5,60
dhcp-option=option6:dns-server{dns}
"""


class Provider:
    """`gateway` and `dns` of the user's first link, and `families`, count from the next `serve`."""

    def __init__(self, world, families):
        self._world = world
        self.router = Machine(world, "router")
        self.net = Machine(world, "net")
        self.gateway = self.dns = FIRST
        self.families = families
        self._dnsmasq = None
        self.authority = Authority(self.router.logs, [AddressService.NAME])
        self._prepare_router()
        self.net.start("/usr/bin/python3", SERVER, SERVER_ADDRESS, self.authority.server_certificate,
                       self.authority.key)
        self.net.start("dnsmasq", "--keep-in-foreground", "--conf-file=/dev/null", "--no-hosts",
                       "--no-resolv", "--user=root", "--bind-dynamic",
                       f"--address=/{AddressService.NAME}/{SERVER_ADDRESS}")
        wait_until(lambda: ":443 " in world.run("net", "ss", "-ltnH"), 5, "the address service")
        self.serve()

    def serve(self):
        """Serves the networks of both links as they are configured now."""
        if self._dnsmasq:
            self.router.stop(self._dnsmasq)
        text = _DNSMASQ.format(name=AddressService.NAME, server=SERVER_ADDRESS)
        if "4" in self.families:
            text += _IPV4.format(link=0, net=1, gateway=self.gateway, dns=self.dns)
            text += _IPV4.format(link=1, net=2, gateway="192.168.2.1", dns="192.168.2.1")
        if "6" in self.families:
            # Beside IPv4 the routers of many providers name no DNS server for IPv6.
            dns = "" if "4" in self.families else ",[fd00:1::1]"
            text += _IPV6.format(link=0, dns=dns)
        self.router.write("/etc/dnsmasq.conf", text)
        self._dnsmasq = self.router.start("dnsmasq", "--keep-in-foreground")
        rules = [f"ip saddr 192.168.1.0/24 snat to {PUBLIC[self.gateway]}",
                 f"ip saddr 192.168.2.0/24 snat to {PUBLIC['192.168.2.1']}"]
        self.router.run("nft", "flush chain ip provider out;" + "".join(
            f"add rule ip provider out oifname wan {rule};" for rule in rules))

    def is_as_at_first(self):
        return self.gateway == self.dns == FIRST

    def portal(self, is_closed):
        """Whether nothing but a portal's log-in page is reached."""
        self.router.run("nft", "flush chain ip provider portal" + (
            ";add rule ip provider portal tcp dport 443 reject with tcp reset" if is_closed else ""))

    def plug(self, link):
        self._world.run("router", "ip", "link", "set", f"lan{link}", "up")

    def pull(self, link):
        self._world.run("router", "ip", "link", "set", f"lan{link}", "down")

    def close(self):
        self.router.close()
        self.net.close()

    def _prepare_router(self):
        run = self.router.run
        for address in ("192.168.1.3/24", "192.168.1.254/24"):
            run("ip", "address", "add", address, "dev", "lan0")
        for address in PUBLIC.values():
            run("ip", "address", "add", f"{address}/32", "dev", "wan")
        run("nft", "table ip provider {"
            " chain out { type nat hook postrouting priority 100; };"
            " chain portal { type filter hook forward priority 0; }; }")
        for link in (0, 1):
            # Checksums that the interface would fill in are wrong for connman, which reads raw packets.
            run("ethtool", "-K", f"lan{link}", "tx", "off")
            self.pull(link)
