#!/usr/bin/python3
"""Every program is built so that a defect in it is hard to use: test_hardening.py PROGRAM..."""

import re
import subprocess
import sys
import unittest

PROGRAMS = sys.argv[1:]


def told_of(program, *options):
    return subprocess.run(["readelf", "--wide", *options, program], check=True,
                          capture_output=True, text=True).stdout


class Hardening(unittest.TestCase):
    def test_programs_are_there(self):
        self.assertTrue(PROGRAMS)

    def test_nobody_knows_where_the_code_lies(self):
        for program in PROGRAMS:
            self.assertRegex(told_of(program, "--file-header"), r"Type:\s+DYN", program)

    def test_the_toolkit_finds_its_own_variables(self):
        for program in PROGRAMS:
            self.assertNotRegex(told_of(program, "--relocs"), r"_COPY\b.*\b_ZN\d+Q", program)

    def test_tables_of_functions_cannot_be_written(self):
        for program in PROGRAMS:
            self.assertIn("GNU_RELRO", told_of(program, "--program-headers"), program)
            self.assertRegex(told_of(program, "--dynamic"), r"\(FLAGS_1\).*\bNOW\b", program)

    def test_data_is_not_run(self):
        for program in PROGRAMS:
            for line in told_of(program, "--program-headers").splitlines():
                flags = re.search(r"^  (LOAD|GNU_STACK) .* ([R ][W ][E ]) +0x", line)
                self.assertFalse(flags and flags[2][1:] == "WE", (program, line))
                self.assertFalse(flags and flags[1] == "GNU_STACK" and "E" in flags[2], program)

    def test_the_stack_is_guarded(self):
        for program in PROGRAMS:
            self.assertIn("__stack_chk_fail", told_of(program, "--symbols"), program)

    def test_no_library_is_looked_for_where_others_may_write(self):
        for program in PROGRAMS:
            self.assertNotRegex(told_of(program, "--dynamic"), r"\((RPATH|RUNPATH)\)", program)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
