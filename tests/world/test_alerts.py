#!/usr/bin/python3
"""Notices as a real notification server shows them: at the right time, once, with the right text."""

import shutil
import signal
import time
import unittest

from harness import case
from harness.dunst import PROGRAMS, Dunst
from harness.session import wait_until
from harness.world import RESIDENT

# Bytes per second on the interface.
FAST = 2_500_000  # twice the threshold
SLOW = 500_000

LOST = ("Internet Connection Lost", "No internet connectivity detected.")
RESTORED = ("Connection Restored", "Internet connectivity has been restored.")
SPEED = "Speed Dropped Below Threshold"
LATENCY = "High Latency Detected"

# Long enough for an unexpected notice to arrive.
A_WHILE = 2


class NoticesTestCase(case.ResidentTestCase):
    INTERVAL = 0.5

    def setUp(self):
        super().setUp()
        self.dunst = Dunst(self.world, self.session)
        self.addCleanup(self.dunst.close)

    def start(self, *wrapper):
        self.session.start_bus()
        self.dunst.start()
        self.session.start_watch()
        self.session.start_resident(*wrapper)

    def carrier(self, state):
        self.world.do("carrier", state)
        if state == "off":
            self.text_becomes("↓-- ↑--", timeout=1)
        else:
            self.watch.until(lambda: self.watch.values["MenubarText"] != "↓-- ↑--", 2, "a text")

    def assert_shown(self, *texts):
        """Waits for these notices, and for a while that no other comes."""
        if texts:
            self.dunst.until_shown(len(texts), 3)
        time.sleep(A_WHILE)
        self.assertEqual(self.dunst.texts(), list(texts))


class TheConnection(NoticesTestCase):
    def setUp(self):
        super().setUp()
        self.send("net", FAST, frame=1000)

    def test_lost_and_restored_gives_one_notice_each_and_its_presence_at_the_start_none(self):
        self.begin()
        self.assert_shown()
        self.carrier("off")
        self.assert_shown(LOST)
        self.carrier("on")
        self.assert_shown(LOST, RESTORED)
        self.assertEqual(self.dunst.history(), [LOST, RESTORED])
        self.assertEqual(self.dunst.urgencies(), ["NORMAL", "NORMAL"])

    def test_missing_at_the_start_gives_a_notice_at_once(self):
        self.world.do("carrier", "off")
        self.start()
        self.dunst.until_shown(1, 2)
        self.assert_shown(LOST)
        self.carrier("on")
        self.assert_shown(LOST, RESTORED)

    def test_restored_twice_leaves_one_notice_of_it(self):
        self.begin()
        for state in ("off", "on", "off", "on"):
            self.carrier(state)
            time.sleep(0.5)
        self.assert_shown(LOST, RESTORED, RESTORED)
        (_, first, second) = (number for number, _, _ in self.dunst.shown)
        self.assertEqual(first, second)
        self.assertEqual(sorted(self.dunst.history()), sorted([LOST, RESTORED]))

    def test_does_not_count_as_lost_or_slow_after_a_pause_of_the_whole_program(self):
        self.begin()
        self.session.resident.send_signal(signal.SIGSTOP)
        time.sleep(5)
        self.session.resident.send_signal(signal.SIGCONT)
        self.watch.next_samples(4, 5)
        self.assert_shown()

    def test_lost_gives_no_notice_while_notices_are_switched_off(self):
        self.session.prefer(refreshInterval=self.INTERVAL, showNotifications=False)
        self.begin()
        self.carrier("off")
        self.carrier("on")
        self.assert_shown()
        self.session.prefer(refreshInterval=self.INTERVAL, showNotifications=True)
        time.sleep(0.5)
        self.carrier("off")
        self.assert_shown(LOST)


class TheServer(NoticesTestCase):
    def setUp(self):
        super().setUp()
        self.send("net", FAST, frame=1000)

    def test_killed_and_restarted_shows_the_next_notice(self):
        self.begin()
        self.carrier("off")
        self.carrier("on")
        self.assert_shown(LOST, RESTORED)
        self.dunst.kill()
        self.carrier("off")
        self.carrier("on")
        self.assert_alive()
        self.dunst.start()
        self.carrier("off")
        self.carrier("on")
        self.assert_shown(LOST, RESTORED, RESTORED)
        self.assertEqual(self.dunst.history(), [RESTORED])

    def test_that_hangs_hinders_nothing_and_shows_the_notice_later(self):
        self.begin()
        self.dunst.halt()
        self.carrier("off")
        self.carrier("on")
        self.watch.next_samples(4, 5)
        self.dunst.resume()
        self.assert_shown(LOST, RESTORED)
        self.dunst.halt()
        self.carrier("off")
        self.carrier("on")
        self.assert_ends_well()

    def test_that_is_not_there_hinders_nothing(self):
        super(NoticesTestCase, self).start()
        self.watch.next_samples(1, 5, after=0)
        for state in ("off", "on", "off", "on"):
            self.carrier(state)
        self.watch.next_samples(4, 5)
        self.assert_ends_well()


class TheSound(NoticesTestCase):
    def start(self):
        """With a helper that records its calls, as dunst plays no sounds."""
        self.sounds = self.session.folder / "sounds"
        self.sounds.touch()
        program = self.session.folder / "bin/tidewell"
        helper = self.session.folder / "libexec/tidewell/notificationSound"
        for directory in (program.parent, helper.parent):
            directory.mkdir(parents=True)
        shutil.copy(RESIDENT, program)
        helper.write_text(f"#!/bin/sh\necho played >>{self.sounds}\n")
        helper.chmod(0o755)
        super().start("sh", "-c", 'exec "$0"', program)

    def played(self):
        return len(self.sounds.read_text().splitlines())

    def test_is_played_for_each_notice_unless_dunst_is_paused(self):
        self.send("net", FAST, frame=1000)
        self.begin()
        self.carrier("off")
        wait_until(lambda: self.played() == 1, 3, "a sound")
        self.dunst.pause(True)
        self.carrier("on")
        wait_until(lambda: self.dunst.withheld() > 0, 3, "a notice")
        time.sleep(A_WHILE)
        self.assertEqual(self.played(), 1)
        self.dunst.pause(False)
        self.carrier("off")
        self.carrier("on")
        wait_until(lambda: self.played() == 2, 3, "another sound")


class TheLine(NoticesTestCase):
    def start_on_slow_line(self):
        """Returns the text of the first notice."""
        self.send("net", SLOW, frame=1000)
        time.sleep(0.2)
        self.start()
        self.watch.until(lambda: self.slow_samples(), 5, "a reading")
        mbps = self.slow_samples()[0].download * 8 / 1e6
        self.assertAlmostEqual(mbps, 4.0, delta=0.2)
        return SPEED, f"Download speed fell to {mbps:.1f} Mbps (threshold: 10 Mbps)"

    def slow_samples(self):
        return [sample for sample in self.watch.samples if sample.download > 1250]

    def test_that_is_slow_gives_one_notice(self):
        self.assert_shown(self.start_on_slow_line())
        self.assertEqual(self.dunst.urgencies(), ["LOW"])

    def test_with_a_high_latency_gives_one_notice(self):
        # No notice of low speed on the idle line.
        self.session.prefer(refreshInterval=self.INTERVAL, slowSpeedThreshold=0.01)
        self.world.do("delay", 150)
        self.start()
        self.watch.until(lambda: self.watch.samples[-1:] and self.watch.samples[-1].latency, 10,
                         "a probe")
        latency = self.watch.samples[-1].latency
        self.assertGreater(latency, 149)
        self.assert_shown((LATENCY, f"Latency is {latency:.0f} ms (threshold: 100 ms)"))
        self.assertEqual(self.dunst.urgencies(), ["LOW"])

    def test_with_a_recent_notice_keeps_a_loss_quiet_but_not_the_return(self):
        notice = self.start_on_slow_line()
        self.world.do("delay", 150)
        self.watch.until(lambda: self.watch.samples[-1].latency > 149, 10, "a slow probe")
        self.carrier("off")
        time.sleep(1)
        self.assert_shown(notice)
        self.carrier("on")
        self.assert_shown(notice, RESTORED)

    @unittest.skipUnless(case.LONG, "takes more than a minute")
    def test_that_stays_slow_gives_another_notice_after_a_minute(self):
        self.start_on_slow_line()
        self.dunst.until_shown(1, 3)
        begin = time.monotonic()
        self.dunst.until_shown(2, 70)
        self.assertGreater(time.monotonic() - begin, 59)
        self.assertLess(time.monotonic() - begin, 60 + 3 * self.INTERVAL)
        self.assertEqual([title for title, _ in self.dunst.texts()], [SPEED, SPEED])
        self.assertEqual(len(self.dunst.history()), 1)


if __name__ == "__main__":
    case.main(*PROGRAMS)
