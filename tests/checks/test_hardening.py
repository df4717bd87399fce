#!/usr/bin/python3
"""Every program is built so that a defect in it is hard to exploit: test_hardening.py PROGRAM..."""

import re
import subprocess
import sys
import unittest

PROGRAMS = sys.argv[1:]


class Hardening(unittest.TestCase):
    def each(self, option):
        """What readelf prints of each program, and its path."""
        self.assertTrue(PROGRAMS)
        for program in PROGRAMS:
            yield subprocess.run(["readelf", "--wide", option, program], check=True,
                                 capture_output=True, text=True).stdout, program

    def test_addresses_are_random(self):
        for header, program in self.each("--file-header"):
            self.assertRegex(header, r"Type:\s+DYN", program)

    def test_the_toolkits_variables_are_not_copied(self):
        for relocations, program in self.each("--relocs"):
            self.assertNotRegex(relocations, r"_COPY\b.*\b_ZN\d+Q", program)

    def test_function_tables_are_read_only_and_libraries_are_searched_in_safe_places(self):
        for dynamic, program in self.each("--dynamic"):
            self.assertRegex(dynamic, r"\(FLAGS_1\).*\bNOW\b", program)
            self.assertNotRegex(dynamic, r"\((RPATH|RUNPATH)\)", program)

    def test_data_is_not_executable(self):
        for headers, program in self.each("--program-headers"):
            self.assertIn("GNU_RELRO", headers, program)
            for kind, flags in re.findall(r"^  (LOAD|GNU_STACK) .* ([R ][W ][E ]) +0x", headers,
                                          re.MULTILINE):
                self.assertNotEqual(flags[1:], "WE", program)
                self.assertFalse(kind == "GNU_STACK" and "E" in flags, program)

    def test_indices_are_checked(self):
        for symbols, program in self.each("--symbols"):
            # In a release it uses no container.
            if not program.endswith("/notificationSound"):
                self.assertIn("__glibcxx_assert_fail", symbols, program)

    def test_the_stack_is_guarded(self):
        for symbols, program in self.each("--symbols"):
            self.assertIn("__stack_chk_fail", symbols, program)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
