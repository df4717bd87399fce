"""The network managers of the distribution, each started as its service starts it."""

from .session import wait_until


class Daemon:
    IS_MANAGER = True
    # What the networks offer it.
    FAMILIES = "46"
    # The DNS server of a tunnel, for those who take it from wg-quick.
    TUNNEL_DNS = None

    def __init__(self, machine):
        self.machine = machine

    def take(self, provider):
        """Takes over what the provider offers now, where renewing the lease does not."""

    def prepare_for_sleep(self):
        """What it does to a cable's interface, but not to the world's veth."""

    def wake(self):
        """Undoes it."""


class NetworkManager(Daemon):
    NAME = "NetworkManager"
    PROGRAMS = ["NetworkManager", "nmcli"]
    DNS = "default"

    # The first link is preferred, as a wired one is to Wi-Fi.
    CONFIGURATION = """
[main]
plugins=keyfile
dns={dns}
rc-manager=symlink
auth-polkit=false
[connection-eth1]
match-device=interface-name:eth1
ipv4.route-metric=200
"""

    def start(self):
        self.machine.write("/etc/NetworkManager/NetworkManager.conf", self.CONFIGURATION.format(dns=self.DNS))
        self.machine.start("NetworkManager", "--debug")
        wait_until(lambda: self.machine.has_name("org.freedesktop.NetworkManager"), 10, self.NAME)

    def off(self):
        self.machine.run("nmcli", "networking", "off")

    def on(self):
        self.machine.run("nmcli", "networking", "on")

    def prepare_for_sleep(self):
        self.machine.run("nmcli", "device", "set", "eth0", "managed", "no")

    def wake(self):
        self.machine.run("nmcli", "device", "set", "eth0", "managed", "yes")


class NetworkManagerWithDnsmasq(NetworkManager):
    NAME = "NetworkManager with dnsmasq"
    PROGRAMS = [*NetworkManager.PROGRAMS, "dnsmasq"]
    DNS = "dnsmasq"


class Networkd(Daemon):
    NAME = "systemd-networkd"
    PROGRAMS = ["networkctl", "resolvectl"]
    TUNNEL_DNS = "10.10.0.1"

    # The first link is preferred, as a wired one is to Wi-Fi.
    NETWORK = "[Match]\nName=eth{link}\n[Network]\nDHCP=ipv4\n[DHCPv4]\nRouteMetric={metric}\n"

    def start(self):
        for link in (0, 1):
            self.machine.write(f"/etc/systemd/network/{link}.network",
                               self.NETWORK.format(link=link, metric=100 + link))
        self.machine.run("ln", "-s", "/run/systemd/resolve/stub-resolv.conf", "/etc/resolv.conf")
        for name in ("network", "resolve"):
            self.machine.start(f"/lib/systemd/systemd-{name}d")
            wait_until(lambda: self.machine.has_name(f"org.freedesktop.{name}1"), 10, name)

    def off(self):
        self.machine.run("networkctl", "down", "eth0")

    def on(self):
        self.machine.run("networkctl", "up", "eth0")


class Connman(Daemon):
    NAME = "connman"
    # Beside IPv6, version 1.41 at times asks for no IPv4 address after its settings were changed.
    FAMILIES = "4"
    PROGRAMS = ["connmand", "connmanctl"]

    def start(self):
        self.machine.run("ln", "-s", "/run/connman/resolv.conf", "/etc/resolv.conf")
        self.machine.start("connmand", "--nodaemon", "--device=eth0,eth1")
        wait_until(lambda: self.machine.has_name("net.connman"), 10, self.NAME)

    def off(self):
        self.machine.run("connmanctl", "disable", "ethernet")

    def on(self):
        self.machine.run("connmanctl", "enable", "ethernet")

    def take(self, provider):
        """It renews a lease after a minute at the earliest, so the user enters the values."""
        if provider.is_as_at_first():
            service = self._configure("--ipv4", "dhcp")
            self.machine.run("busctl", "call", "net.connman", f"/net/connman/service/{service}",
                             "net.connman.Service", "SetProperty", "sv", "Nameservers.Configuration", "as", 0)
        else:
            self._configure("--ipv4", "manual", "192.168.1.50", "255.255.255.0", provider.gateway,
                            "--nameservers", provider.dns)

    def _configure(self, *settings):
        words = self.machine.run("connmanctl", "services").split()
        service = next(word for word in words if word.startswith("ethernet_"))
        self.machine.run("connmanctl", "config", service, *settings)
        return service


class UsersDnsmasq(Daemon):
    """No manager: addresses and routes of the user's own, and a DNS server on the machine."""

    NAME = "a user's dnsmasq"
    IS_MANAGER = False
    PROGRAMS = ["dnsmasq"]

    def start(self):
        self.machine.run("ip", "address", "add", "192.168.1.50/24", "dev", "eth0")
        self.machine.run("ip", "link", "set", "eth0", "up")
        self.machine.write("/etc/resolv.conf", "nameserver 127.0.0.1\n")
        self.machine.start("dnsmasq", "--keep-in-foreground", "--conf-file=/dev/null", "--no-resolv",
                           "--server=192.168.1.1", "--listen-address=127.0.0.1", "--user=root")
        self.machine.run("ip", "route", "add", "default", "via", "192.168.1.1")

    def take(self, provider):
        self.machine.run("ip", "route", "replace", "default", "via", provider.gateway)


DAEMONS = [NetworkManager, Networkd, Connman, UsersDnsmasq]
