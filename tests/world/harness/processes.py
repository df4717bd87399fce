"""What the tests of the list of programs share."""

import unittest

from . import case, nettop, world

NET = {4: "198.51.100.2", 6: "2001:db8:51::2"}
WHY_NO_BPF = None if world.check() else nettop.why_no_bpf()
needs_bpf = unittest.skipIf(WHY_NO_BPF, f"skipped: {WHY_NO_BPF}")


class ProcessesTestCase(case.WorldTestCase):
    def setUp(self):
        super().setUp()
        self.world.do("rate", "off")

    def serve(self, where="net", address="::"):
        server = nettop.crowd(self.world, where, "serve", address, nettop.SERVER_PORT)
        self.addCleanup(nettop.end, server)
        return server

    def crowd(self, where, *arguments):
        process = nettop.crowd(self.world, where, *arguments)
        self.addCleanup(nettop.end, process)
        return process

    def talk(self, protocol, version, count, program=None):
        port = nettop.SERVER_PORT if protocol == "tcp" else world.DISCARD
        talker = nettop.Talker(self.world, protocol, NET[version], port, count, program=program)
        self.addCleanup(talker.close)
        return talker

    def privileged(self):
        helper = nettop.Privileged()
        self.addCleanup(helper.close)
        return helper.path

    def in_user(self, *command):
        return self.world.command("user", *command)

    def check(self, run):
        """Checks what is true for every run."""
        self.assertEqual((run.status, run.errors), (0, ""))
        self.assertTrue(run.text.startswith(",bytes_in,bytes_out,\n"))
        self.assertLess(len(run.text), 32768)
        self.assertLessEqual(len(run.rows), 256)
        totals = [received + sent for _, _, received, sent in run.rows]
        self.assertEqual(totals, sorted(totals, reverse=True))
        # It measures for one second; the service's limit is four.
        self.assertLess(run.seconds, 2.5)
