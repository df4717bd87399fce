#!/usr/bin/python3
"""tidewellctl asks a real resident, an absent one, one that hangs, and buses that are not there."""

import fcntl
import json
import os
import pty
import re
import signal
import socket
import struct
import subprocess
import termios
import threading
import time

from harness import case
from harness.session import NAME, PATH, wait_until
from harness.world import CONTROL, EIGHT_MEGABITS, RESIDENT, VERSION

OFF = '{"text":"","class":"off","tooltip":"not running"}'
NO_BUS, NOT_RUNNING, NOT_RESPONDING = 3, 4, 5


class ControlTestCase(case.ResidentTestCase):
    def control(self, *arguments, **options):
        """Runs tidewellctl to its end."""
        options = {"capture_output": True, "text": True, "timeout": 15, **options}
        return subprocess.run([CONTROL, *arguments], env=self.session.environment, **options)

    def answer(self, *arguments):
        done = self.control(*arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def assert_refused(self, status, complaint, *arguments):
        """It ends with a status and a complaint, after at most three seconds."""
        began = time.monotonic()
        done = self.control(*arguments)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (status, "", f"tidewellctl: {complaint}\n"))
        self.assertLess(time.monotonic() - began, 3)

    def follow(self, *options):
        return Lines(self, CONTROL, "follow", *options)

    def is_running(self):
        reply = subprocess.run(["busctl", "--user", "--auto-start=no", "status", NAME],
                               env=self.session.environment, capture_output=True)
        return reply.returncode == 0

    def allow_activation(self):
        """The bus starts the resident on demand."""
        folder = self.session.folder / "services"
        folder.mkdir()
        (folder / f"{NAME}.service").write_text(f"[D-BUS Service]\nName={NAME}\nExec={RESIDENT}\n")
        configuration = self.session.folder / "bus.conf"
        text = configuration.read_text()
        configuration.write_text(text.replace("<listen>", f"<servicedir>{folder}</servicedir><listen>"))


class ARunningResident(ControlTestCase):
    def setUp(self):
        super().setUp()
        self.begin()

    def test_gives_its_status(self):
        self.assertRegex(self.answer("status"),
                         r"\A↓\w+ ↑\w+, excellent, latency .+, jitter [\d.]+ ms, loss 0 %\n\Z")
        values = json.loads(self.answer("status", "--json"))
        self.assertEqual((values["running"], values["status"], values["ipAddress"]), (True, "excellent", "192.168.1.2"))
        self.assertIsInstance(values["latencyMs"], (int, float))

    def test_gives_its_processes(self):
        self.assertEqual(self.answer("processes").splitlines()[0], "  DOWNLOAD    UPLOAD  PROGRAM")
        self.assertIsInstance(json.loads(self.answer("processes", "--json")), list)

    def test_opens_its_windows_and_ends(self):
        # Nobody needs to read the output.
        for window in ("panel", "details", "settings"):
            done = self.control("open", window, stdout=closed_pipe(self), capture_output=False)
            self.assertEqual(done.returncode, 0)
        self.watch.until(lambda: self.watch.windows == ["panel", "detail", "settings"], 2, "the requests")
        self.assertEqual(self.answer("quit"), "")
        self.assertFalse(self.is_running())
        self.assertEqual(self.session.resident.wait(2), 0)

    def test_is_followed_through_an_outage_its_end_and_its_return(self):
        module = self.follow("--format", "waybar")
        texts = lambda: [json.loads(line)["text"] for line in module.lines]
        wait_until(lambda: texts()[-1:] == ["↓0K ↑0K"], 5, "the text as it is")
        self.send("net", EIGHT_MEGABITS, frame=1000)
        wait_until(lambda: texts()[-1] == "↓1.0M ↑0K", 10, "the text of the traffic")
        self.world.do("route", "off")
        wait_until(lambda: module.lines[-1].startswith('{"text":"↓-- ↑--","class":"down",'), 10, "the outage")
        self.session.end_resident()
        wait_until(lambda: module.lines[-1] == OFF, 5, "the end")
        self.session.start_resident()
        wait_until(lambda: texts()[-1] != "", 5, "the next beginning")
        self.assertTrue(all(one != other for one, other in zip(module.lines, module.lines[1:])))

    def test_is_followed_in_every_format(self):
        formats = ("plain", "json", "polybar", "i3bar")
        plain, structured, tagged, block = (self.follow("--format", name) for name in formats)
        wait_until(lambda: plain.lines and structured.lines and tagged.lines and len(block.lines) > 3, 5, "the lines")
        self.assertTrue(json.loads(structured.lines[0])["running"])
        self.assertEqual(json.loads(block.lines[0])["version"], 1)
        self.assertIn("↓", json.loads("\n".join(block.lines[1:4]) + "]")[1][0]["full_text"])
        self.assertTrue(tagged.lines[0].startswith("↓"))
        self.session.end_resident()
        wait_until(lambda: (plain.lines[-1], structured.lines[-1], tagged.lines[-1]) ==
                   ("not running", '{"running":false}', ""), 5, "the end")

    def test_is_believed_alone(self):
        module = self.follow("--format=waybar")
        wait_until(lambda: module.lines, 5, "the text as it is")
        name = module.bus_name()
        for destination in ([], [f"--destination={name}"]):
            subprocess.run(["busctl", "--user", "emit", *destination, PATH, "org.freedesktop.DBus.Properties",
                            "PropertiesChanged", "sa{sv}as", NAME, "1", "MenubarText", "s", "impostor", "0"],
                           env=self.session.environment, check=True)  # fmt: skip
        self.world.do("route", "off")
        wait_until(lambda: "down" in module.lines[-1], 10, "the outage")
        self.assertNotIn("impostor", "".join(module.lines))

    def test_may_hang(self):
        follower = self.follow()
        wait_until(lambda: follower.lines, 5, "the first line")
        self.session.resident.send_signal(signal.SIGSTOP)
        self.addCleanup(self.resume)
        late = self.follow()
        for command in (["status"], ["processes"], ["speedtest"], ["open", "panel"], ["quit"]):
            self.assert_refused(NOT_RESPONDING, "Tidewell does not respond", *command)
        self.assertEqual(late.lines, ["not responding"])
        self.session.resident.send_signal(signal.SIGCONT)
        wait_until(lambda: late.lines[-1].startswith("↓"), 5, "the first values after it")

    def resume(self):
        if self.session.resident:
            self.session.resident.send_signal(signal.SIGCONT)

    def test_costs_a_follower_nothing_while_nothing_changes(self):
        follower = self.follow()
        wait_until(lambda: follower.lines, 5, "the first line")
        self.session.resident.send_signal(signal.SIGSTOP)
        self.addCleanup(self.resume)
        time.sleep(0.5)  # what was sent before
        before = follower.switches()
        time.sleep(3)
        self.assertEqual(follower.switches(), before)

    def test_loses_a_follower_whose_reader_leaves(self):
        reading, writing = os.pipe()
        follower = subprocess.Popen([CONTROL, "follow"], env=self.session.environment, stdout=writing,
                                    stderr=subprocess.PIPE)  # fmt: skip
        os.close(writing)
        self.addCleanup(follower.stderr.close)
        self.addCleanup(follower.kill)
        self.assertTrue(os.read(reading, 1000))
        self.session.resident.send_signal(signal.SIGSTOP)  # no line to write
        self.addCleanup(self.resume)
        os.close(reading)
        self.assertEqual((follower.wait(2), follower.stderr.read()), (0, b""))

    def test_reports_a_full_disk_but_no_closed_pipe(self):
        with open("/dev/full", "w") as full:
            done = self.control("status", stdout=full, stderr=subprocess.PIPE, capture_output=False)
        self.assertEqual((done.returncode, done.stderr), (1, "tidewellctl: cannot write: No space left on device\n"))
        self.assertEqual(self.control("status", stdout=closed_pipe(self), capture_output=False).returncode, 0)

    def test_survives_the_end_of_the_bus(self):
        follower = subprocess.Popen([CONTROL, "follow"], env=self.session.environment, text=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.PIPE)  # fmt: skip
        self.addCleanup(follower.stdout.close)
        self.addCleanup(follower.stderr.close)
        self.assertTrue(follower.stdout.readline())
        self.session.kill_bus()
        self.assertEqual((follower.wait(2), follower.stderr.read()), (NO_BUS, "tidewellctl: no session bus\n"))


class AnAbsentResident(ControlTestCase):
    def test_is_not_started(self):
        self.allow_activation()
        self.session.start_bus()
        follower = self.follow("--format", "waybar")
        for command in (["status"], ["processes"], ["speedtest"], ["open", "settings"], ["quit"]):
            self.assert_refused(NOT_RUNNING, "Tidewell is not running", *command)
        done = self.control("status", "--json")
        self.assertEqual((done.returncode, done.stdout), (NOT_RUNNING, '{"running":false}\n'))
        wait_until(lambda: follower.lines == [OFF], 5, "the line")
        self.assertFalse(self.is_running())

    def test_is_started_when_asked(self):
        self.allow_activation()
        # Its child, the resident, has to live in the test world.
        self.session.bus = self.world.start(
            "user", "dbus-daemon", "--nofork", "--nosyslog", f"--config-file={self.session.folder}/bus.conf",
            env=self.session.environment)
        self.session.wait_for_bus()
        self.assertRegex(self.answer("status", "--start"), "^↓")
        self.assertTrue(self.is_running())
        self.answer("quit")
        self.assertFalse(self.is_running())

    def test_cannot_be_started_without_an_activation_file(self):
        self.session.start_bus()
        self.assert_refused(NOT_RUNNING, "Tidewell cannot be started", "open", "panel", "--start")

    def test_does_not_keep_the_program_from_saying_what_it_is(self):
        for program, command in ((CONTROL, "tidewellctl"), (RESIDENT, "tidewell")):
            done = subprocess.run([program, "--version"], env={}, capture_output=True, text=True, timeout=5)
            self.assertEqual((done.returncode, done.stdout), (0, f"{command} {VERSION}\n"))
        done = self.control("--help")
        self.assertEqual(done.returncode, 0)
        self.assertIn("Usage: tidewellctl", done.stdout)
        self.assert_refused(2, 'unknown command "stat"; try "tidewellctl --help"', "stat")


class NoBus(ControlTestCase):
    def test_is_said(self):
        for variable in ("DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"):
            self.assert_refused(NO_BUS, "no session bus", "status")
            del self.session.environment[variable]
        self.assert_refused(NO_BUS, "no session bus", "follow")

    def test_is_what_a_bus_is_that_hangs(self):
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(str(self.session.bus_path))
            listener.listen()
            self.assert_refused(NO_BUS, "no session bus", "status")


class ASpeedTest(ControlTestCase):
    def test_says_why_it_failed(self):
        self.begin_without_server()
        self.assert_refused(1, "the speed test failed: the configuration document is of no use: "
                            "the server's name leads nowhere", "speedtest")
        done = self.control("speedtest", "--json")
        self.assertEqual((done.returncode, list(json.loads(done.stdout)), done.stderr), (1, ["failure"], ""))

    def test_shows_its_progress_at_a_narrow_terminal(self):
        self.begin_without_server()
        leader, follower = pty.openpty()
        self.addCleanup(os.close, leader)
        fcntl.ioctl(follower, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 20, 0, 0))
        done = self.control("speedtest", stderr=follower, capture_output=False)
        os.close(follower)
        self.assertEqual(done.returncode, 1)
        shown = os.read(leader, 10000).decode()
        progress = re.findall(r"\r\x1b\[K([^\r\n]*)", shown)
        self.assertRegex(progress[0], r"\A0 s ↓\w+")
        self.assertTrue(all(len(part) < 20 for part in progress if not part.startswith("tidewellctl")), shown)

    def begin_without_server(self):
        self.session.environment["TIDEWELL_SPEEDTEST_CONFIG"] = "https://speed.example/configuration"
        self.begin()


def closed_pipe(test):
    """The end to write to of a pipe that nobody reads."""
    reading, writing = os.pipe()
    os.close(reading)
    test.addCleanup(os.close, writing)
    return writing


class Lines:
    """The lines that a command prints during the test."""

    def __init__(self, test, *command):
        self.lines = []
        self._environment = test.session.environment
        self._process = subprocess.Popen(command, env=self._environment, text=True, stdout=subprocess.PIPE)
        reader = threading.Thread(target=self._read, daemon=True)
        reader.start()
        test.addCleanup(self._process.stdout.close)
        test.addCleanup(reader.join, 5)
        test.addCleanup(self._process.wait)
        test.addCleanup(self._process.kill)

    def switches(self):
        """How often the process has woken up."""
        with open(f"/proc/{self._process.pid}/status") as file:
            status = file.read()
        return re.findall(r"ctxt_switches:\s*(\d+)", status)

    def bus_name(self):
        """Its unique name on the bus."""
        listed = subprocess.run(["busctl", "--user", "--json=short", "list", "--unique"], env=self._environment,
                                capture_output=True, text=True, check=True).stdout  # fmt: skip
        return next(entry["name"] for entry in json.loads(listed) if entry["pid"] == self._process.pid)

    def _read(self):
        for line in self._process.stdout:
            self.lines.append(line.rstrip("\n"))


if __name__ == "__main__":
    case.main()
