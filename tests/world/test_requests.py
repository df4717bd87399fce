#!/usr/bin/python3
"""Requests on the bus, also by a second start of the program."""

import shutil
import subprocess
import time

from harness import case
from harness.world import RESIDENT


class ASecondStart(case.ResidentTestCase):
    def test_asks_the_first_for_its_panel_and_ends_well(self):
        self.begin()
        for count in (1, 2):
            second = self.world.start("user", RESIDENT, env=self.session.environment,
                                      stdin=subprocess.DEVNULL)
            self.assertEqual(second.wait(3), 0)
            self.watch.until(lambda: len(self.watch.windows) == count, 2, "a request")
        self.watch.next_samples(2, 5)
        self.assertEqual(self.watch.windows, ["panel", "panel"])
        self.assertEqual(self.watch.owners, [True], "the name has changed hands")
        self.assert_ends_well()

    def test_after_the_end_of_the_first_is_a_first_one(self):
        self.begin()
        self.assert_ends_well()
        self.session.start_resident()
        self.watch.next_samples(2, 5)
        self.assertEqual(self.watch.windows, [])
        self.assertEqual(self.watch.owners, [True, False, True])


class Requests(case.ResidentTestCase):
    def test_for_windows_are_passed_on(self):
        self.begin()
        for method in ("OpenDetail", "OpenSettings", "OpenPanel"):
            self.session.busctl("call", method)
        self.watch.until(lambda: len(self.watch.windows) == 3, 2, "the requests")
        self.assertEqual(self.watch.windows, ["detail", "settings", "panel"])

    def test_for_a_speed_test_without_its_tool_end_without_a_result(self):
        # A copy without helpers next to it.
        lonely = self.session.folder / "bin" / "tidewell"
        lonely.parent.mkdir()
        shutil.copy(RESIDENT, lonely)
        self.begin("sh", "-c", f'exec "{lonely}"')
        running = []
        for _ in range(2):
            self.session.busctl("call", "RunSpeedTest")
            self.watch.until(lambda: self.property("SpeedTestIsRunning") == "b false", 5,
                             "the end of the speed test")
            time.sleep(0.2)
            running.append(self.watch.values["SpeedTestIsRunning"])
            self.assertEqual(self.property("LastSpeedTest"), "a(dddx) 0")
        self.assertEqual(running, [False, False])
        self.assert_alive()
        self.assert_ends_well()

    def test_for_processes_are_answered_with_none_while_nobody_tracks_them(self):
        self.session.prefer(refreshInterval=self.INTERVAL, trackPerProcess=False)
        self.begin()
        self.assertEqual(self.property("Processes"), "a(isxxxd) 0")

    def property(self, name):
        return self.session.busctl("get-property", name)


if __name__ == "__main__":
    case.main("busctl")
