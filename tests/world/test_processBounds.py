#!/usr/bin/python3
"""What the list of programs' helper withstands: too many sockets, and callers who stop it."""

import pathlib
import signal
import subprocess
import sys
import time

from harness import case, nettop, world
from harness.processes import NET, ProcessesTestCase, needs_bpf

TOO_MANY = 70_000  # sockets; the table has room for 65,536


@needs_bpf
class TheKernelsPrograms(ProcessesTestCase):
    def test_lose_nothing_beside_sockets_that_move_nothing(self):
        for _ in range(10):  # On a busy machine closing them may take longer than the second.
            holders = nettop.crowd(self.world, "user", "gather", TOO_MANY // 1000, 1000)
            run = nettop.run("bpf")
            nettop.end(holders)
            talker = self.talk("udp", 4, 300_000)
            self.check(run.finish())
            if run.of(talker.process.pid) == (0, talker.said["sent"]):
                break
        self.assertEqual(run.of(talker.process.pid), (0, talker.said["sent"]))
        self.assertEqual(run.named("(too many sockets)"), (0, 0))

    def test_tell_what_they_had_no_room_for(self):
        self.crowd("user", "gather", TOO_MANY // 1000, 1000)
        for _ in range(10):
            run = nettop.run("bpf")
            self.world.run("net", sys.executable, nettop.CROWD, "call", world.USER)
            talker = self.talk("udp", 4, 300_000)
            self.check(run.finish())
            if run.named("(too many sockets)")[1] >= talker.said["sent"]:
                break
        self.assertGreaterEqual(run.named("(too many sockets)")[1], talker.said["sent"])

    def test_lose_nothing_when_many_more_sockets_open_than_there_were_files(self):
        with open("/proc/sys/fs/file-nr", encoding="ascii") as file:
            files = int(file.read().split()[0])
        count = min(2 * max(2 * files, 2048) + 4000, 40_000)
        for _ in range(10):  # On a busy machine opening them may take longer than the second.
            run = nettop.run("bpf")
            burst = nettop.crowd(self.world, "user", "burst", NET[4], world.DISCARD, count)
            run.finish()
            nettop.end(burst)
            self.check(run)
            if run.of(burst.pid) == (0, 128 * count):
                break
        self.assertEqual(run.of(burst.pid), (0, 128 * count))
        self.assertEqual(run.named("(too many sockets)"), (0, 0))

    def test_count_nothing_after_their_deadline_while_the_helper_is_stopped(self):
        run = nettop.run("bpf")
        run.process.send_signal(signal.SIGSTOP)
        time.sleep(2.2)
        talker = self.talk("udp", 4, 100_000)
        run.process.send_signal(signal.SIGCONT)
        run.finish()
        self.assertEqual((run.status, run.of(talker.process.pid)), (0, (0, 0)))

    def test_are_attached_for_two_helpers_of_a_user_and_eight_of_all_users(self):
        helper = self.privileged()
        for user, attached in zip(range(60001, 60006), (2, 2, 2, 2, 0)):
            stopped = [self.helper_of(user, helper) for _ in range(3)]
            time.sleep(0.5)
            for one in stopped:
                one.send_signal(signal.SIGSTOP)
            self.assertEqual(sum(self.links_of(one.pid) for one in stopped), 4 * attached)
        # Another user's helper measures in another way, and that of root as ever.
        run = nettop.run(None, nettop.as_user(60006), helper).finish()
        self.check(run)
        self.check(nettop.run("bpf").finish())

    @staticmethod
    def links_of(process):
        """How many programs it has attached."""
        files = pathlib.Path(f"/proc/{process}/fdinfo").iterdir()
        return sum("link_type:\tcgroup" in file.read_text() for file in files)

    def helper_of(self, user, helper):
        process = subprocess.Popen([*nettop.as_user(user), helper], stdout=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process


if __name__ == "__main__":
    case.main("setpriv", "setcap")
