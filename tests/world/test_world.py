#!/usr/bin/python3
"""The world itself, which all other tests rely on."""

import statistics
import subprocess
import time

from harness import case
from harness.session import Sample
from harness.truth import Accuracy, CounterLog
from harness.world import SCRIPT


class TheSender(case.WorldTestCase):
    def test_sends_exactly_what_it_says_and_what_it_was_asked_for(self):
        before, _ = self.world.counters()
        sent = self.world.sender("net", 1_000_000, 2).wait()
        after, _ = self.world.counters()
        self.assertEqual(sent["linkBytes"], 2_000_000)
        self.assertEqual(sent["refused"], 0)
        # Neighbour discovery adds a frame or two.
        self.assertLess(after - before - sent["linkBytes"], 500)
        self.assertGreaterEqual(after - before, sent["linkBytes"])

    def test_keeps_to_the_rate_all_the_time(self):
        sender = self.world.sender("net", 1_000_000)
        time.sleep(0.2)
        rates = self.world.rates(0.5, times=4)
        sender.stop()
        for rate in rates:
            self.assertAlmostEqual(rate, 1_000_000, delta=30_000)


class TheLink(case.WorldTestCase):
    def measure(self, where, rate):
        """The rate that arrives at the far end of an overloaded link."""
        receiver = "user" if where == "net" else "net"
        sender = self.world.sender(where, rate, frame=1000)
        time.sleep(0.3)  # the bucket is empty by then
        (measured,) = self.world.rates(1, where=receiver)
        sender.stop()
        return measured

    def test_is_as_wide_as_asked_in_both_directions(self):
        self.world.do("rate", 8, 4)
        self.assertAlmostEqual(self.measure("net", 2_000_000), 1_000_000, delta=20_000)
        self.assertAlmostEqual(self.measure("user", 2_000_000), 500_000, delta=10_000)

    def test_takes_a_new_rate_while_it_is_full(self):
        self.world.do("rate", 8, 8)
        sender = self.world.sender("net", 4_000_000)
        time.sleep(0.3)
        self.world.do("rate", 16, 8)
        sender.stop()
        self.assertAlmostEqual(self.measure("net", 4_000_000), 2_000_000, delta=40_000)

    def test_delays_by_what_is_asked(self):
        for delay in (5, 80, 25):
            self.world.do("delay", delay)
            self.assertAlmostEqual(statistics.median(self.world.ping(3)), delay, delta=2)
        self.world.do("delay", 0)
        self.assertLess(min(self.world.ping(3)), 2)

    def test_keeps_its_delay_over_new_interfaces(self):
        self.world.do("delay", 30)
        self.world.do("recreate")
        self.assertAlmostEqual(min(self.world.ping(3)), 30, delta=2)

    def test_varies_its_delay_within_the_jitter(self):
        self.world.do("delay", 40, 20)
        times = self.world.ping(10)
        self.assertGreater(max(times) - min(times), 2)
        self.assertGreater(min(times), 19)
        self.assertLess(max(times), 63)

    def test_loses_all_or_none_of_the_probes(self):
        self.world.do("loss", 100)
        self.assertEqual(self.world.ping(2), [])
        self.world.do("loss", 0)
        self.assertEqual(len(self.world.ping(2)), 2)


class TheMachine(case.WorldTestCase):
    def user(self, *command):
        return self.world.run("user", *command)

    def test_reaches_the_probed_address_or_not(self):
        self.assertEqual(len(self.world.ping()), 1)
        self.world.do("probe", "unreachable")
        self.assertEqual(self.world.ping(), [])
        self.world.do("probe", "reachable")
        self.assertEqual(len(self.world.ping()), 1)

    def test_speaks_ipv6(self):
        self.user("ping", "-c", "1", "-W", "2", "2606:4700:4700::1111")

    def test_has_a_name_server_of_its_own(self):
        self.assertEqual(self.user("cat", "/etc/resolv.conf"), "nameserver 9.9.9.9\n")

    def test_loses_its_carrier_and_keeps_its_route(self):
        self.world.do("carrier", "off")
        self.assertEqual(self.user("cat", "/sys/class/net/eth0/carrier").strip(), "0")
        self.assertIn("linkdown", self.user("ip", "route", "show", "default"))
        self.world.do("carrier", "on")
        self.assertEqual(len(self.world.ping()), 1)

    def test_loses_its_routes(self):
        self.world.do("route", "off")
        self.assertEqual(self.user("ip", "route", "show", "default"), "")
        self.world.do("route", "on")
        self.assertEqual(len(self.world.ping()), 1)

    def test_gets_a_new_interface_of_the_same_name(self):
        before = self.user("cat", "/sys/class/net/eth0/ifindex")
        self.world.do("rate", 8, 8)
        self.world.do("recreate", 0.1)
        self.assertNotEqual(self.user("cat", "/sys/class/net/eth0/ifindex"), before)
        self.assertEqual(len(self.world.ping()), 1)
        self.assertIn("tbf", self.world.run("router", "tc", "qdisc", "show", "dev", "lan0"))

    def test_changes_over_to_the_other_interface_with_its_traffic(self):
        self.world.do("switch")
        self.assertIn("dev eth1", self.user("ip", "route", "get", "1.1.1.1"))
        before, _ = self.world.counters("eth1")
        sent = self.world.sender("net", 100_000, 1).wait()
        after, _ = self.world.counters("eth1")
        self.assertGreaterEqual(after - before, sent["linkBytes"])
        self.world.do("switch")
        self.assertIn("dev eth0", self.user("ip", "route", "get", "1.1.1.1"))


class TheTruth(case.WorldTestCase):
    def test_tells_a_reading_that_is_right_from_one_that_is_a_little_off(self):
        sender = self.world.sender("net", 1_000_000)
        self.addCleanup(sender.stop)
        log = CounterLog(self.world)
        time.sleep(2.5)
        log.stop()
        edges = (log.readings[100], log.readings[-100])
        rate = (edges[1][2] - edges[0][2]) / (edges[1][0] - edges[0][0])
        for factor, error in ((1.0, 0.0), (1.005, 0.5), (0.995, 0.5)):
            fields = [[edge[0], int(rate * factor), 0, 0, 0, 0] for edge in edges]
            accuracy = Accuracy([Sample(0, each) for each in fields], log)
            self.assertAlmostEqual(accuracy.worst, error, delta=0.12)
            self.assertAlmostEqual(abs(accuracy.mean_error), error, delta=0.12)


class TheScript(case.WorldTestCase):
    def names(self):
        return {line.split()[0] for line in subprocess.check_output(
            ["ip", "netns"], text=True).splitlines() if self.world.name in line}

    def test_does_nothing_where_a_world_stands_already(self):
        before = self.world.run("user", "cat", "/sys/class/net/eth0/address")
        subprocess.run([SCRIPT, "up", self.world.name], check=True)
        self.assertEqual(self.world.run("user", "cat", "/sys/class/net/eth0/address"), before)

    def test_removes_everything(self):
        self.world.do("delay", 5)
        left_over = self.world.start("user", "sleep", "1000")
        self.world.down()
        self.assertEqual(self.names(), set())
        self.assertNotEqual(left_over.wait(1), 0)
        self.assertEqual(subprocess.run(["pgrep", "-f", f"delayRelay.*{self.world.name}/"],
                                        stdout=subprocess.DEVNULL).returncode, 1)

    def test_replaces_a_world_that_was_left_incomplete(self):
        self.world.down()
        subprocess.run(["ip", "netns", "add", f"tidewell-{self.world.name}-router"], check=True)
        subprocess.run([SCRIPT, "up", self.world.name], check=True)
        self.assertEqual(len(self.world.ping()), 1)

    def test_refuses_nonsense(self):
        for words in (["rate", "fast", "1"], ["loss", "101"], ["probe"], ["fly"], ["delay", "-1"]):
            result = subprocess.run([SCRIPT, "-n", self.world.name, *words], capture_output=True)
            self.assertEqual(result.returncode, 2, words)


if __name__ == "__main__":
    case.main()
