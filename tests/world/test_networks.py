#!/usr/bin/python3
"""Real network managers and VPNs change the machine's network. What Tidewell has to read stands in a table of
docs/networks.md, from which this test is driven."""

import re
import signal
import sys
import time

from harness import case, daemons, tunnels
from harness.dunst import PROGRAMS, Dunst
from harness.machine import Machine, why_none
from harness.provider import Provider
from harness.session import wait_until
from harness.world import HERE

DOCUMENT = HERE.parent.parent / "docs" / "networks.md"
COLUMNS = {"interface": "InterfaceName", "local IP": "IpAddress", "public IP": "PublicIp", "DNS": "Dns"}
NOTICES = {"Internet Connection Lost": "lost", "Connection Restored": "restored"}

PATIENCE = 20
# An outage at waking is told after half a minute. A failed look-up is repeated after 10 s, 30 s and 2 min.
LONGER_PATIENCE = {"the lid closes and opens elsewhere, without a cable": 45,
                   "the portal opens": 150 if case.LONG else 45}
# Within this time after the right values no other values and notices come.
A_WHILE = 1.5
PING_INTERVAL = 5


def table(heading):
    """The rows below a heading of the document: name of each column -> content."""
    text = DOCUMENT.read_text().split(f"\n## {heading}\n")[1].split("\n## ")[0]
    lines = [[cell.strip() for cell in line.strip("|").split("|")]
             for line in text.splitlines() if line.startswith("|")]
    return [dict(zip(lines[0], line)) for line in lines[2:]]


class NetworkTestCase(case.ResidentTestCase):
    DAEMON = None

    def setUp(self):
        super().setUp()
        self.provider = Provider(self.world, self.DAEMON.FAMILIES)
        self.addCleanup(self.provider.close)
        self.machine = Machine(self.world, "user")
        self.addCleanup(self.machine.close)
        for interface in ("eth0", "eth1", "lo"):
            self.machine.run("ip", "address", "flush", "dev", interface, "scope", "global")
        self.machine.start_system_bus()
        self.login = self.machine.start("/usr/bin/python3", HERE / "loginManager.py")
        # No notice of low speed on the idle line.
        self.session.prefer(refreshInterval=self.INTERVAL, slowSpeedThreshold=0.01)
        self.daemon = self.DAEMON(self.machine)
        self.daemon.start()
        self.tunnels = {kind.NAME: kind(self.machine, self.provider.net, self.daemon.TUNNEL_DNS)
                        for kind in tunnels.TUNNELS}
        self.session.environment["SSL_CERT_FILE"] = str(self.provider.authority.certificate)
        self.session.start_bus()
        self.dunst = Dunst(self.world, self.session)
        self.addCleanup(self.dunst.close)
        self.dunst.start()

    def go_through(self, heading):
        faults, before = [], None
        for row in table(heading):
            if self.is_meant(row["beside"]):
                wrong = self.judge(row, before)
                before = row
                faults += [f"{row['after']}: {wrong}"] if wrong else []
        self.assertIsNotNone(before, "no row for this daemon")
        self.assertEqual(faults, [])

    def judge(self, row, before):
        """What is wrong after the row's event."""
        # A fresh resident, because no outage is told within a minute of another notice. A return always is.
        if "lost" in row["notices"]:
            self.restart_resident(before)
        known = len(self.dunst.texts())
        began = time.monotonic()
        self.event(row["after"])
        if self.session.resident is None:
            self.restart_resident()
        wrong = self.wrong_values(row, known)
        print(f"{self.daemon.NAME}: {row['after']}: {wrong or 'right'} after {time.monotonic() - began:.1f} s",
              flush=True)
        if wrong:
            self.print_network()
        return wrong

    def print_network(self):
        """The state of the machine, which may be the manager's fault."""
        for command in (["ip", "-brief", "address"], ["ip", "route"], ["ip", "-6", "route"],
                        ["cat", "/etc/resolv.conf"]):
            print(self.machine.run(*command, check=False), flush=True)

    def is_meant(self, beside):
        if beside == "each":
            return self.daemon.IS_MANAGER
        return any(self.daemon.NAME.startswith(name) for name in beside.split(", "))

    def restart_resident(self, row=None):
        if self.session.resident:
            self.session.end_resident()
        self.session.start_watch()
        self.session.start_resident(*self.machine.entry)
        self.watch.until(lambda: self.watch.samples, 10, "a sample")
        if row:
            self.wrong_values({**row, "notices": "none"}, len(self.dunst.texts()))

    def wrong_values(self, row, known):
        """What is still wrong after the patience is over, or wrong again a while later."""
        try:
            wait_until(lambda: not self.differences(row, known),
                       LONGER_PATIENCE.get(row["after"], PATIENCE), row["after"])
            time.sleep(A_WHILE + (PING_INTERVAL if row["pings"] != "–" else 0))
        except AssertionError:
            pass
        return self.differences(row, known)

    def differences(self, row, known):
        values = self.watch.values
        shown = {column: values.get(name) for column, name in COLUMNS.items()}
        shown["pings"] = "answered" if values.get("LatencyMs") else "lost"
        shown["connected"] = "yes" if values.get("IsConnected") else "no"
        titles = [title for title, _ in self.dunst.texts()[known:]]
        shown["notices"] = ", ".join(NOTICES.get(title, title) for title in titles) or "none"
        return {column: f"{value}, not {row[column]}" for column, value in shown.items()
                if row[column] not in ("–", value)}

    def event(self, text):
        name = re.sub(r"[^a-z0-9]+", "_", text.lower())
        for kind in self.tunnels:
            if text.startswith(kind):
                return self.tunnel(self.tunnels[kind], text)
        return getattr(self, name)()

    def the_start(self):
        self.provider.plug(0)
        self.until_address("eth0", "192.168.1.50")

    def another_dns_server(self):
        self.offer(dns="192.168.1.3")

    def another_gateway(self):
        self.offer(gateway="192.168.1.254")

    def the_first_gateway_and_dns_server_again(self):
        self.offer(gateway="192.168.1.1", dns="192.168.1.1")

    def the_cable_is_pulled(self):
        self.provider.pull(0)

    the_first_cable_is_pulled = the_cable_is_pulled

    def the_cable_is_plugged_in(self):
        self.provider.plug(0)

    def the_first_cable_is_plugged_in_again(self):
        self.provider.plug(0)
        self.until_address("eth0", "192.168.1.50")

    def a_second_cable_is_plugged_in(self):
        self.provider.plug(1)
        self.until_address("eth1", "192.168.2.50")

    def the_second_cable_is_pulled(self):
        self.provider.pull(1)

    def the_user_switches_the_network_off(self):
        self.daemon.off()

    def the_user_switches_the_network_on(self):
        self.daemon.on()

    def tunnel(self, tunnel, text):
        if text.endswith("ends"):
            self.machine.run("ip", "route", "flush", "1.1.1.1")
            tunnel.down()
        else:
            tunnel.up("all traffic" in text)

    def a_route_pins_1_1_1_1_to_the_lan(self):
        self.machine.run("ip", "route", "add", "1.1.1.1", "via", "192.168.1.1", "dev", "eth0")

    def a_route_makes_1_1_1_1_unreachable(self):
        self.machine.run("ip", "route", "add", "unreachable", "1.1.1.1")

    def the_lid_closes_and_opens(self):
        self.machine.run("ip", "route", "flush", "1.1.1.1")
        self.sleep()
        self.wake()
        time.sleep(1)  # the two ends of a cable need a moment
        self.provider.plug(0)
        self.until_address("eth0", "192.168.1.50")
        time.sleep(7)  # until the link counts as settled

    def the_lid_closes_and_opens_elsewhere_without_a_cable(self):
        self.sleep()
        self.wake()

    def the_cable_is_plugged_in_behind_a_portal(self):
        self.provider.portal(is_closed=True)
        self.provider.plug(0)

    def the_portal_opens(self):
        time.sleep(60 if case.LONG else 5)
        self.provider.portal(is_closed=False)

    def the_cable_is_plugged_in_with_ipv6_alone(self):
        # NetworkManager keeps the addresses of a link that comes back soon.
        wait_until(lambda: "192.168.1." not in self.addresses("eth0"), 15, "the addresses' end")
        self.provider.families = "6"
        self.provider.serve()
        self.provider.plug(0)

    def sleep(self):
        self.login.send_signal(signal.SIGUSR1)
        time.sleep(0.2)
        self.daemon.prepare_for_sleep()
        self.provider.pull(0)
        time.sleep(1)  # the machine takes a moment to fall asleep, which Tidewell sees
        self.session.resident.send_signal(signal.SIGSTOP)
        time.sleep(3)

    def wake(self):
        self.session.resident.send_signal(signal.SIGCONT)
        self.login.send_signal(signal.SIGUSR2)
        time.sleep(0.2)
        self.daemon.wake()

    def offer(self, **changes):
        for name, value in changes.items():
            setattr(self.provider, name, value)
        self.provider.serve()
        self.daemon.take(self.provider)

    def until_address(self, interface, address):
        wait_until(lambda: address in self.addresses(interface), PATIENCE, address)

    def addresses(self, interface):
        return self.machine.run("ip", "address", "show", interface)


class Tables:
    """The tests of a manager. Those that are not IN_EVERY_RUN belong to the long form."""

    IN_EVERY_RUN = ["Cables and gateways"]

    def setUp(self):
        if not case.LONG and self.heading() not in self.IN_EVERY_RUN:
            self.skipTest("takes more than a minute")
        super().setUp()

    def heading(self):
        """The test's heading in the document."""
        name = self._testMethodName.removeprefix("test_").replace("_", " ")
        headings = re.findall("^## (.*)$", DOCUMENT.read_text(), re.M)
        return next(each for each in headings if each.lower().replace(",", "") == name)

    def test_cables_and_gateways(self):
        self.go_through(self.heading())

    def test_vpns(self):
        self.go_through(self.heading())

    def test_lids_portals_and_ipv6(self):
        self.go_through(self.heading())


class NetworkManager(Tables, NetworkTestCase):
    DAEMON = daemons.NetworkManager
    # Its cables are handled as with dnsmasq.
    IN_EVERY_RUN = ["Lids, portals and IPv6"]


class NetworkManagerWithDnsmasq(Tables, NetworkTestCase):
    DAEMON = daemons.NetworkManagerWithDnsmasq


class Networkd(Tables, NetworkTestCase):
    DAEMON = daemons.Networkd
    IN_EVERY_RUN = ["Cables and gateways", "VPNs"]


class Connman(Tables, NetworkTestCase):
    DAEMON = daemons.Connman


class UsersDnsmasq(NetworkTestCase):
    DAEMON = daemons.UsersDnsmasq

    def test_cables_and_gateways(self):
        self.go_through("Cables and gateways")


if __name__ == "__main__":
    reason = why_none(program for kind in (*daemons.DAEMONS, *tunnels.TUNNELS) for program in kind.PROGRAMS)
    if reason:
        print(f"skipped: {reason}")
        sys.exit(77)
    case.main(*PROGRAMS)
