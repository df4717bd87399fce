#!/usr/bin/python3
"""What the helpers may still do while they run, and what they touch."""

import os
import pathlib
import re
import signal
import subprocess
import time
import unittest

from harness import case, nettop
from harness.processes import needs_bpf
from harness.session import wait_until

HELPERS = nettop.HELPER.parent
BPF = 1 << 39  # CAP_BPF


def status(process):
    text = pathlib.Path(f"/proc/{process.pid}/status").read_text()
    return dict(line.split(":\t", 1) for line in text.splitlines())


def capabilities(process):
    fields = status(process)
    return int(fields["CapPrm"], 16) | int(fields["CapEff"], 16) | int(fields["CapInh"], 16)


def full_pipe():
    """Its ends; who writes to it blocks."""
    reader, writer = os.pipe()
    os.set_blocking(writer, False)
    try:
        while True:
            os.write(writer, bytes(4096))
    except BlockingIOError:
        os.set_blocking(writer, True)
    return reader, writer


def is_writing(process):
    return "pipe_write" in pathlib.Path(f"/proc/{process.pid}/wchan").read_text()


class TheHelperWithCapabilities(unittest.TestCase):
    def setUp(self):
        helper = nettop.Privileged()
        self.addCleanup(helper.close)
        self.path = helper.path

    def start(self, *command, **options):
        process = subprocess.Popen(list(map(str, command)), **options)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    @needs_bpf
    def test_has_one_of_them_while_it_measures_and_cannot_be_looked_into(self):
        process = self.start(*nettop.as_nobody(), self.path, stdout=subprocess.DEVNULL)
        time.sleep(nettop.LEAD)
        wait_until(lambda: capabilities(process) == BPF, 1, "the others gone")
        self.assertEqual(status(process)["NoNewPrivs"], "1")
        # What cannot be dumped belongs to root.
        self.assertEqual(os.stat(f"/proc/{process.pid}/mem").st_uid, 0)

    def test_keeps_nothing_of_what_its_caller_prepares(self):
        reader, writer = os.pipe()
        ignoring = ["sh", "-c", 'trap "" TERM; ulimit -c unlimited; exec "$@" <&-', "sh"]
        process = self.start(*ignoring, *nettop.as_nobody(), self.path, "--route=diag",
                             pass_fds=[writer], stdout=subprocess.DEVNULL)
        os.close(writer)
        wait_until(lambda: status(process)["Name"] == "nettop", 1, "its start")
        self.assertEqual(os.read(reader, 1), b"", "who closes the last descriptor")
        os.close(reader)
        process.terminate()
        self.assertEqual(process.wait(timeout=0.5), -signal.SIGTERM)

    def test_measures_with_few_descriptors_and_little_memory_or_ends(self):
        for limit in ("-n 3", "-n 6", "-v 4000", "-v 20000", "-l 0", "-s 64", "-f 0"):
            with self.subTest(limit):
                command = ["sh", "-c", f'ulimit {limit}; exec "$@"', "sh", *nettop.as_nobody(), self.path]
                process = self.start(*command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
                text = process.communicate(timeout=4)[0].decode()
                self.assertNotIn(process.returncode, (-signal.SIGSEGV, -signal.SIGBUS))
                if process.returncode == 0:
                    self.assertTrue(text.startswith(",bytes_in,bytes_out,\n"))

    def test_has_none_when_it_prints(self):
        without_groups = ["unshare", "--mount", "sh", "-c",
                          'mount -t tmpfs none /sys/fs/cgroup && exec "$@"', "sh"]
        for name, stream, command in (
                ("usage", "stderr", [*nettop.as_nobody(), self.path, "--bogus"]),
                ("error", "stderr", [*without_groups, *nettop.as_nobody(), self.path, "--route=bpf"]),
                ("rows", "stdout", [*nettop.as_nobody(), self.path])):
            with self.subTest(name):
                reader, writer = full_pipe()
                process = self.start(*command, **{stream: writer})
                os.close(writer)
                wait_until(lambda: is_writing(process), 4, "its output")
                self.assertEqual(capabilities(process), 0)
                os.close(reader)

    def test_opens_only_tables_of_the_kernel_and_the_names_of_users(self):
        for route in ("bpf", "diag"):
            with self.subTest(route):
                output = subprocess.run(
                    ["strace", "-f", "-e", "trace=open,openat,openat2", nettop.HELPER,
                     f"--route={route}"], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                    text=True).stderr
                paths = set(re.findall(r'open\w*\((?:AT_FDCWD, )?"([^"]*)"', output))
                self.assertTrue(paths)
                for path in paths:
                    self.assertRegex(path, r"^(/proc(/.*)?|/sys/fs/cgroup(/unified)?|/dev/null|"
                                     r"/etc/passwd)$")


class WhoAsksTheInternet(case.WorldTestCase):
    def test_is_confined_before_it_looks_at_its_arguments(self):
        for name in ("publicAddress", "networkQuality"):
            with self.subTest(name):
                output = subprocess.run(
                    ["strace", "-e", "trace=prctl,seccomp,landlock_create_ruleset",
                     HELPERS / name, "--bogus", "--bogus"], stderr=subprocess.PIPE, text=True).stderr
                self.assertIn("PR_SET_NO_NEW_PRIVS, 1", output)
                self.assertRegex(output, r"PR_SET_SECCOMP, SECCOMP_MODE_FILTER, .* = 0\n")
                self.assertIn("landlock_create_ruleset(", output)

    def test_is_confined_while_it_waits_for_an_answer(self):
        self.world.run("net", "nft", "add rule inet world input tcp dport 8443 drop")
        url = "https://198.51.100.2:8443"
        process = self.world.start("user", HELPERS / "publicAddress", url)
        self.addCleanup(process.wait)
        wait_until(lambda: status(process)["Seccomp"] == "2", 2, "the filter")
        self.assertEqual((status(process)["NoNewPrivs"], process.poll()), ("1", None))


if __name__ == "__main__":
    case.main("setpriv", "setcap", "strace")
