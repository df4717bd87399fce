#!/usr/bin/python3
"""The documents describe the bus interface as the resident offers it."""

import pathlib
import re
import shlex
import subprocess
import xml.etree.ElementTree as ElementTree

from harness import case
from harness.session import wait_until

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
DESCRIPTION = (ROOT / "docs" / "dbus.md").read_text()
INTERFACE = "com.halden.Tidewell"
OBJECT = (INTERFACE, "/com/halden/Tidewell")


def described():
    """The members in the description: (kind, name, types, whether it is announced)."""
    members = set()
    for name, star, types in re.findall(r"^\| `(\w+)`( \*)? \| `([^`]+)` \|", DESCRIPTION, re.M):
        members.add(("property", name, types, bool(star)))
    for section, kind in (("Signals", "signal"), ("Methods", "method")):
        text = DESCRIPTION.split(f"## {section}\n")[1].split("\n## ")[0]
        for item in re.findall(r"^- (.*?):", text, re.M):
            for name, arguments in re.findall(r"`(\w+)\((.*?)\)`", item):
                types = "".join(word.split()[0] for word in arguments.split(",") if word.strip())
                members.add((kind, name, types, False))
    return members


def introspected(xml):
    """The same members from introspection."""
    members = set()
    interface = ElementTree.fromstring(xml).find(f"interface[@name='{INTERFACE}']")
    for member in interface:
        kind, name = member.tag, member.get("name")
        if kind == "property":
            emits = member.find("annotation[@name='org.freedesktop.DBus.Property.EmitsChangedSignal']")
            announced = emits is None or emits.get("value") == "true"
            members.add((kind, name, member.get("type"), announced))
        elif kind in ("method", "signal"):
            types = "".join(argument.get("type") for argument in member.findall("arg"))
            members.add((kind, name, types, False))
    return members


class DocumentsTestCase(case.ResidentTestCase):
    def setUp(self):
        super().setUp()
        self.begin()

    def output(self, *command):
        return subprocess.run(command, env=self.session.environment, check=True, timeout=10,
                              capture_output=True, text=True).stdout  # fmt: skip


class TheDescription(DocumentsTestCase):
    def test_names_every_member_and_no_other(self):
        actual = introspected(self.output("busctl", "--user", "introspect", "--xml-interface", *OBJECT))
        self.assertGreater(len(actual), 10)
        self.assertEqual(described() - actual, set(), "described, but not there")
        self.assertEqual(actual - described(), set(), "there, but not described")

    def test_gives_examples_that_work(self):
        examples = DESCRIPTION.split("## Examples")[1].split("```")[1].splitlines()[1:]
        self.assertGreater(len(examples), 3)
        for line in examples:
            self.output(*shlex.split(line))
        wait_until(lambda: self.session.resident.poll() == 0, 5, "the end that the last one asks for")


if __name__ == "__main__":
    case.main()
