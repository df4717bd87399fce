#!/usr/bin/python3
"""Broken tools and a broken bus lead to fallback values, never to an exit."""

import os
import pathlib
import signal
import subprocess
import time

from harness import case
from harness.session import wait_until
from harness.world import RESIDENT

# What it does, and the latency and loss of a probe by it.
PINGS = {
    "not executable": ("", 0.0, 10.0),
    "silent": ("exit 0\n", 0.0, 10.0),
    "printing garbage": ("head -c 3000 /dev/urandom\n", 0.0, 10.0),
    "printing a time that is no number": ('echo "64 bytes from 1.1.1.1: time=abc ms"\n', 0.0, 0.0),
    "printing a time without an end": ('printf "time=12.5"\n', 0.0, 10.0),
    "printing a good time and failing": ('echo "time=12.5 ms"; echo error >&2; exit 2\n', 12.5, 0.0),
    "asked in the language that is understood": (
        '[ "$LC_ALL" = C ] && [ -z "$LANGUAGE" ] && echo "time=1.5 ms"\n', 1.5, 0.0),
    "flooding": ("head -c 10000000 /dev/zero\n", 0.0, 10.0),
    "hanging": ("exec sleep 1000\n", 0.0, 10.0),
}


class BrokenPing(case.ResidentTestCase):
    INTERVAL = 0.2

    def wrapper(self, prepare):
        """Runs commands in a mount namespace before the resident starts in it."""
        return ["unshare", "-m", "sh", "-e", "-c", prepare + '\nexec "$0"']

    def fake(self, script, mode=0o755):
        path = self.session.folder / "ping"
        path.write_text("#!/bin/sh\n" + script)
        path.chmod(mode)
        return self.instead_of_ping(path)

    def instead_of_ping(self, path):
        return self.wrapper(f'mount --bind {path} "$(readlink -f "$(command -v ping)")"')

    def probe(self, *wrapper, timeout=30):
        """The first probe's sample. Sampling goes on after it."""
        self.start(*wrapper)
        sample = self.watch.next_samples(5, timeout, after=0)[4]
        self.watch.next_samples(2, timeout)
        self.assert_alive()
        return sample

    def assert_failed(self, sample):
        self.assertEqual((sample.latency, sample.jitter, sample.loss), (0.0, 0.0, 10.0))

    def test_missing(self):
        # The same folder of programs, without ping.
        folder = self.session.folder
        (folder / "programs").mkdir()
        (folder / "all").mkdir()
        for name in os.listdir("/usr/bin"):
            if name != "ping":
                (folder / "programs" / name).symlink_to(folder / "all" / name)
        self.assert_failed(self.probe(*self.wrapper(
            f"mount --bind /usr/bin {folder}/all; mount --bind {folder}/programs /usr/bin")))

    def test_not_a_program(self):
        path = self.session.folder / "binary"
        path.write_bytes(b"\x7fELF" + bytes(100))
        path.chmod(0o755)
        self.assert_failed(self.probe(*self.instead_of_ping(path)))

    def test_doing_anything(self):
        for name, (script, latency, loss) in PINGS.items():
            with self.subTest(name):
                sample = self.probe(*self.fake(script, 0o644 if name == "not executable" else 0o755))
                self.assertEqual((sample.latency, sample.jitter, sample.loss), (latency, 0.0, loss))
                self.assert_ends_well()
                self.session.kill_bus()

    def test_hanging_does_not_delay_the_exit_and_leaves_no_process(self):
        self.start(*self.fake("trap '' TERM; exec sleep 987654\n"))
        hanging = ["pgrep", "-f", "-s", str(self.session.resident.pid), "sleep 987654"]
        wait_until(lambda: subprocess.run(hanging, stdout=subprocess.DEVNULL).returncode == 0, 5,
                   "the ping that hangs")
        self.assert_ends_well()
        self.assertEqual(subprocess.run(hanging).returncode, 1)


class TheBus(case.ResidentTestCase):
    INTERVAL = 0.2

    def test_killed_and_restarted_at_the_same_address(self):
        self.begin()
        for _ in range(2):
            self.session.kill_bus()
            time.sleep(0.5)
            self.assert_alive()
            self.session.start_bus()
            self.session.start_watch()
            self.watch.next_samples(3, 8)
        self.assert_ends_well()

    def test_started_after_the_resident(self):
        self.session.start_resident()
        time.sleep(1)
        self.assert_alive()
        self.session.start_bus()
        self.session.start_watch()
        self.watch.next_samples(3, 8)

    def test_never_there(self):
        self.session.start_resident()
        time.sleep(2)
        self.assert_alive()
        self.assert_ends_well()

    def test_at_an_address_that_makes_no_sense(self):
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = "nonsense:\x01,;=,unix:path="
        self.session.start_resident()
        time.sleep(1)
        self.assert_alive()
        self.assert_ends_well()

    def test_accepts_and_never_answers(self):
        silent = subprocess.Popen(
            ["python3", "-c", "import socket, sys, time\n"
             "s = socket.socket(socket.AF_UNIX)\ns.bind(sys.argv[1])\ns.listen()\ntime.sleep(60)",
             str(self.session.bus_path)])
        self.addCleanup(silent.wait)
        self.addCleanup(silent.kill)
        self.session.wait_for_bus()
        self.session.start_resident()
        time.sleep(1.5)
        self.assert_alive()
        self.assert_ends_well()

    def test_stopped_for_a_while_loses_no_reading(self):
        self.begin()
        self.session.bus.send_signal(signal.SIGSTOP)
        time.sleep(2)
        self.session.bus.send_signal(signal.SIGCONT)
        samples = self.watch.next_samples(len(self.watch.samples) + 12, 10, after=0)
        for before, sample in zip(samples, samples[1:]):
            self.assertLess(sample.timestamp - before.timestamp, 2.5 * self.INTERVAL)


class TheEnd(case.ResidentTestCase):
    INTERVAL = 0.2

    def test_comes_on_request_over_the_bus(self):
        self.begin()
        self.session.busctl("call", "Quit")
        self.assertEqual(self.session.resident.wait(2), 0)
        self.watch.until(lambda: self.watch.owners[-1:] == [False], 2, "the name given back")

    def test_comes_on_sigterm_at_any_moment(self):
        self.session.start_bus()
        for pause in (0.05, 0.3, 1.02):
            self.session.start_resident()
            wait_until(self.started, 5, "the start")
            time.sleep(pause)
            self.assert_ends_well()

    def started(self):
        """Whether `ip netns exec` has executed the resident."""
        name = pathlib.Path(f"/proc/{self.session.resident.pid}/comm").read_text().strip()
        return name == pathlib.Path(RESIDENT).name


class KeptRunning(case.ResidentTestCase):
    """As the login entry starts it."""
    INTERVAL = 0.2

    def setUp(self):
        super().setUp()
        self.begin("sh", "-c", 'exec "$0" --keep-running')

    def child(self):
        pid = self.session.resident.pid
        return int(pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text())

    def owners_become(self, *owners):
        self.watch.until(lambda: self.watch.owners == list(owners), 10, f"owners {owners}")

    def test_comes_back_after_a_crash(self):
        os.kill(self.child(), signal.SIGSEGV)
        self.owners_become(True, False, True)
        self.watch.next_samples(2, 5)
        self.assert_alive()

    def test_ends_for_good_when_asked_to(self):
        self.session.busctl("call", "Quit")
        self.assertEqual(self.session.resident.wait(5), 0)
        self.owners_become(True, False)

    def test_ends_whole_on_sigterm(self):
        status, _ = self.session.end_resident()
        self.assertEqual(status, -signal.SIGTERM)
        self.owners_become(True, False)


class ThePreferences(case.ResidentTestCase):
    INTERVAL = 0.5

    def test_that_are_garbage_do_no_harm(self):
        self.begin()
        file = self.session.folder / "config" / "tidewell" / "preferences.toml"
        for content in (b"", b"\xff\xfe\x00garbage", b"refreshInterval = ", b"[[[[",
                        b'refreshInterval = "fast"', b"refreshInterval = nan",
                        b"refreshInterval = -1", b"refreshInterval = 1e308"):
            file.write_bytes(content)
            time.sleep(0.15)
            self.assert_alive()
        self.session.prefer(refreshInterval=0.3)
        self.watch.next_samples(3, 5)
        self.assert_ends_well()


if __name__ == "__main__":
    case.main()
