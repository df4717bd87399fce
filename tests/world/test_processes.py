#!/usr/bin/python3
"""The list of programs: the helper's output compared with programs that count what they send."""

import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from harness import case, nettop, world
from harness.processes import NET, WHY_NO_BPF, ProcessesTestCase, needs_bpf
from harness.session import wait_until


@needs_bpf
class TheKernelsPrograms(ProcessesTestCase):
    def test_count_every_byte_of_tcp_and_udp_over_both_versions_of_ip(self):
        server = self.serve()
        for version in (4, 6):
            run = nettop.run("bpf")
            tcp = self.talk("tcp", version, 5_000_000)
            udp = self.talk("udp", version, 300_007)
            self.check(run.finish())
            received, sent = run.of(tcp.process.pid)
            self.assertEqual(run.of(udp.process.pid), (0, udp.said["sent"]))
            self.assertAlmostEqual(sent, tcp.said["sent"], delta=0.001 * tcp.said["sent"])
            self.assertAlmostEqual(received, tcp.said["received"], delta=0.02 * received)
            self.assertAlmostEqual(run.of(server.pid)[0], sent, delta=0.001 * sent)
            self.assertLess(sum(run.named("(unknown)")), 0.001 * sent)
            tcp.close()

    def test_count_a_paced_second_within_half_a_percent(self):
        sender = self.world.sender("user", 2_000_000, 4, frame=1000)
        time.sleep(0.5)
        run = nettop.run("bpf")
        self.check(run.finish())
        sender.stop()
        # 14 bytes of each frame are Ethernet's.
        expected = 2_000_000 * 986 / 1000
        self.assertAlmostEqual(run.named("sender")[1], expected, delta=0.005 * expected)

    def test_name_a_hundred_programs_that_live_for_moments_and_lose_no_byte(self):
        self.serve()
        for protocol, port in (("udp", world.DISCARD), ("tcp", nettop.SERVER_PORT)):
            run = nettop.run("bpf")
            output = self.world.run("user", sys.executable, nettop.CROWD, "many", 100,
                                    world.tool("talker"), protocol, NET[4], port, 20_000)
            self.check(run.finish())
            said = [json.loads(line) for line in output.splitlines()]
            self.assertEqual(len(said), 100)
            for one in said:
                sent = run.of(one["process"])[1]
                # A TCP connection is closed after the count was printed.
                after = 0 if protocol == "udp" else 3 * 52
                self.assertLessEqual(one["sent"], sent)
                self.assertLessEqual(sent, one["sent"] + after)
            names = {row[0] for row in run.rows if row[1] in {one["process"] for one in said}}
            self.assertEqual(names, {"talker"})
            self.assertLess(sum(run.named("(unknown)")), 0.001 * sum(run.named("talker")))

    def test_print_names_that_cannot_confuse_their_reader(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        names = {b"a.b,c\nd": "a_b_c_d", "🌊".encode(): "🌊", b"caf\xe9": "caf_",
                 b"kernel_task": "kernel_task_", b"x" * 200: "x" * 63, b"with space": "with space",
                 b"unknown": "unknown", b"(unknown)": "_unknown_", b"user root": "user root",
                 "fire\u200bfox".encode(): "fire_fox", "user\u00a0root".encode(): "user_root"}
        run = nettop.run("bpf")
        for name in names:
            program = os.path.join(os.fsencode(folder.name), name)
            shutil.copy(world.tool("talker"), program)
            self.talk("udp", 4, 5000, program=os.fsdecode(program))
        self.check(run.finish())
        for name in names.values():
            self.assertEqual(run.named(name), (0, 5 * 1028), name)

    def test_leave_out_the_loopback(self):
        server = self.serve("user")
        run = nettop.run("bpf")
        talker = nettop.Talker(self.world, "tcp", "192.168.1.2", nettop.SERVER_PORT, 1_000_000)
        self.addCleanup(talker.close)
        self.check(run.finish())
        self.assertEqual(run.of(talker.process.pid), (0, 0))
        self.assertEqual(run.of(server.pid), (0, 0))

    def test_vanish_with_the_helper_however_it_ends(self):
        for signal_number in (signal.SIGTERM, signal.SIGKILL):
            before = self.links()
            run = nettop.run("bpf")
            attached = self.links() - before
            self.assertGreaterEqual(len(attached), 4)
            run.process.send_signal(signal_number)
            run.process.communicate()
            wait_until(lambda: not self.links() & attached, 2, "the programs gone")

    def test_show_everybodys_programs_to_an_ordinary_user(self):
        server = self.serve()
        run = nettop.run("bpf", nettop.as_nobody(), self.privileged())
        talker = self.talk("tcp", 4, 100_000)
        self.check(run.finish())
        self.assertGreater(run.of(talker.process.pid)[1], 100_000)
        self.assertGreater(run.of(server.pid)[0], 100_000)

    def test_name_no_program_of_others_where_the_administrator_hides_them(self):
        hidden = ["unshare", "--mount", "sh", "-c",
                  'mount -t proc -o hidepid=2 proc /proc && exec "$@"', "sh"]
        run = nettop.run("bpf", [*hidden, *nettop.as_nobody()], self.privileged())
        talker = self.talk("udp", 4, 100_000)
        self.check(run.finish())
        self.assertEqual(run.of(talker.process.pid), (0, 0))
        self.assertGreaterEqual(run.named("(user root)")[1], talker.said["sent"])

    def test_bear_thousands_of_connections_that_come_and_go(self):
        self.serve()
        churns = [self.crowd("user", "churn", NET[4], nettop.SERVER_PORT) for _ in range(2)]
        run = nettop.run("bpf").finish()
        self.check(run)
        for churn in churns:
            self.assertGreater(run.of(churn.pid)[1], 100_000)

    def test_bear_thousands_of_processes(self):
        self.crowd("user", "idle", 3000, 0)
        run = nettop.run("bpf")
        talker = self.talk("udp", 4, 1000)
        self.check(run.finish())
        self.assertEqual(run.of(talker.process.pid), (0, 1028))

    def test_count_what_a_vpn_carries_once(self):
        tunnel = self.crowd_tunnel()
        run = nettop.run("bpf", self.in_user("sh", "-c", nettop.WITH_GROUPS, "sh"))
        talker = nettop.Talker(self.world, "udp", "10.99.0.2", world.DISCARD, 200_000)
        self.addCleanup(talker.close)
        self.check(run.finish())
        wrapped = 200 * (1028 + 28)
        self.assertEqual(run.of(talker.process.pid), (0, talker.said["sent"]))
        self.assertEqual(run.of(tunnel.pid)[1], wrapped - talker.said["sent"])

    def crowd_tunnel(self):
        tunnel = self.crowd("user", "tunnel", NET[4], world.DISCARD)
        self.world.run("user", "sysctl", "-q", "net.ipv6.conf.tun0.disable_ipv6=1")
        self.world.run("user", "ip", "address", "add", "10.99.0.1/24", "dev", "tun0")
        self.world.run("user", "ip", "link", "set", "tun0", "up")
        return tunnel

    @staticmethod
    def links():
        output = subprocess.run(["bpftool", "--json", "link", "show"], check=True,
                                capture_output=True, text=True).stdout
        return {link["id"] for link in json.loads(output)}


class TheSocketsOwnCounters(ProcessesTestCase):
    def test_give_the_payload_of_tcp_exactly_over_both_versions_of_ip(self):
        self.serve()
        for version in (4, 6):
            run = nettop.run("diag", self.in_user())
            talker = self.talk("tcp", version, 5_000_000)
            self.check(run.finish())
            # 8 bytes of the first segment's options are not counted.
            self.assertEqual(run.of(talker.process.pid)[1], talker.said["sent"] - 8)
            talker.close()

    def test_put_udp_into_a_row_of_its_own(self):
        run = nettop.run("diag", self.in_user())
        talker = self.talk("udp", 4, 300_000)
        self.check(run.finish())
        self.assertEqual(run.of(talker.process.pid), (0, 0))
        self.assertAlmostEqual(run.named("(other traffic)")[1], talker.said["sent"], delta=1000)

    def test_leave_out_the_loopback(self):
        server = self.serve("user")
        for host in ("127.0.0.1", "::1", "192.168.1.2"):
            run = nettop.run("diag", self.in_user())
            talker = nettop.Talker(self.world, "tcp", host, nettop.SERVER_PORT, 1_000_000)
            self.addCleanup(talker.close)
            self.check(run.finish())
            self.assertEqual((run.of(talker.process.pid), run.of(server.pid)), ((0, 0), (0, 0)))

    def test_name_an_ordinary_users_own_programs_and_the_users_of_the_others(self):
        self.serve()
        wrapper = self.in_user(*nettop.as_nobody())
        helper = nettop.Privileged()
        self.addCleanup(helper.close)
        shutil.copy(world.tool("talker"), helper.path.parent / "talker")
        run = nettop.run("diag", wrapper, helper.path)
        mine = subprocess.Popen([*wrapper, helper.path.parent / "talker", "tcp", NET[4],
                                 str(nettop.SERVER_PORT), "200000", "2"], stdout=subprocess.PIPE)
        self.addCleanup(mine.communicate)
        self.talk("tcp", 4, 100_000)
        self.check(run.finish())
        self.assertGreater(run.of(mine.pid)[1], 200_000)
        self.assertGreater(run.named("(user root)")[1], 100_000)

    def test_stand_in_without_a_word_where_the_programs_cannot_be_loaded(self):
        self.serve()
        helper = self.privileged()
        places = {
            "no new privileges": [*nettop.as_nobody("--no-new-privs"), helper],
            "withheld capabilities": [*nettop.as_nobody("--bounding-set=-all"), helper],
            "no capabilities": [*nettop.as_nobody(), self.unprivileged(helper)],
            "no control groups": [nettop.HELPER],
        }
        unshared = [*nettop.as_nobody(), "unshare", "--user"]
        if subprocess.run([*unshared, "true"], capture_output=True).returncode == 0:
            places["a user namespace"] = [*unshared, helper]
        for place, command in places.items():
            with self.subTest(place):
                run = nettop.run(None, self.in_user(*command[:-1]), command[-1])
                talker = self.talk("tcp", 4, 100_000)
                self.check(run.finish())
                self.assertGreaterEqual(sum(row[3] for row in run.rows), talker.said["sent"] - 8)
                refused = nettop.run("bpf", self.in_user(*command[:-1]), command[-1]).finish()
                self.assertNotEqual((refused.status, refused.errors), (0, ""))
                self.assertEqual(refused.text, "")

    def test_bear_thousands_of_connections_that_come_and_go(self):
        self.serve()
        for _ in range(2):
            self.crowd("user", "churn", NET[4], nettop.SERVER_PORT)
        run = nettop.run("diag", self.in_user()).finish()
        self.check(run)
        self.assertGreater(sum(row[3] for row in run.rows), 200_000)

    @staticmethod
    def unprivileged(helper):
        return shutil.copy(helper, helper.parent / "plain")


class TheResident(case.ResidentTestCase):
    def test_publishes_who_downloads(self):
        server = nettop.crowd(self.world, "user", "serve", "::", nettop.SERVER_PORT)
        self.addCleanup(nettop.end, server)
        client = nettop.crowd(self.world, "net", "connect", world.USER, nettop.SERVER_PORT, 5, 5)
        self.addCleanup(nettop.end, client)
        self.session.prefer(refreshInterval=self.INTERVAL, trackPerProcess=True)
        self.begin(*([] if WHY_NO_BPF else ["sh", "-c", nettop.WITH_GROUPS, "sh"]))
        wait_until(lambda: f" {server.pid} " in self.processes(), 8, "the downloading program")
        fields = self.processes().split(f" {server.pid} ")[1].split()
        # 5 connections send 100 bytes ten times a second and receive acknowledgements. Programs of one
        # name share a row if other network namespaces are visible.
        heard = 152 if WHY_NO_BPF else 152 + 52
        self.assertAlmostEqual(int(fields[1]), 5 * 10 * heard, delta=1100)
        self.assert_alive()

    def processes(self):
        return " " + self.session.busctl("get-property", "Processes")


if __name__ == "__main__":
    case.main("setpriv", "setcap", "bpftool", "busctl")
