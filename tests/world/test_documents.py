#!/usr/bin/python3
"""The documents describe the bus interface as the resident offers it."""

import json
import pathlib
import re
import shlex
import subprocess
import threading
import xml.etree.ElementTree as ElementTree

from harness import case
from harness.session import wait_until
from harness.world import EIGHT_MEGABITS

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


class TheWaybarModule(DocumentsTestCase):
    def test_follows_the_text_and_survives_the_end_of_tidewell(self):
        module = Lines(self, ROOT / "packaging" / "waybarModule")
        texts = lambda: [json.loads(line)["text"] for line in module.lines]
        wait_until(lambda: texts()[-1:] == ["↓0K ↑0K"], 5, "the text as it is")
        self.send("net", EIGHT_MEGABITS, frame=1000)
        wait_until(lambda: texts()[-1] == "↓1.0M ↑0K", 10, "the text of the traffic")
        self.world.do("route", "off")
        wait_until(lambda: json.loads(module.lines[-1]) ==
                   {"text": "↓-- ↑--", "class": "down", "tooltip": "down"}, 10, "the outage")  # fmt: skip
        self.session.end_resident()
        wait_until(lambda: json.loads(module.lines[-1])["text"] == "", 5, "the end")
        self.session.start_resident()
        wait_until(lambda: texts()[-1] != "", 5, "the next beginning")

    def test_believes_only_tidewell(self):
        module = Lines(self, ROOT / "packaging" / "waybarModule")
        wait_until(lambda: module.lines, 5, "the text as it is")
        self.output("busctl", "--user", "emit", OBJECT[1], "org.freedesktop.DBus.Properties",
                    "PropertiesChanged", "sa{sv}as", INTERFACE, "1", "MenubarText", "s", "impostor", "0")  # fmt: skip
        self.world.do("route", "off")
        wait_until(lambda: "down" in module.lines[-1], 10, "the outage")
        self.assertNotIn("impostor", "".join(module.lines))

    def test_prints_no_markup(self):
        folder = self.session.folder
        message = {"MenubarText": {"type": "s", "data": "<b>&amp;\"</b>"}, "Status": {"type": "s", "data": "<&>"}}
        (folder / "message").write_text(json.dumps(message, separators=(",", ":")))
        (folder / "busctl").write_text(f"#!/bin/sh\n[ $4 = call ] && cat {folder}/message || sleep 60\n")
        (folder / "busctl").chmod(0o755)
        self.session.environment["PATH"] = f"{folder}:{self.session.environment['PATH']}"
        module = Lines(self, ROOT / "packaging" / "waybarModule")
        wait_until(lambda: module.lines, 5, "the text")
        self.assertEqual(json.loads(module.lines[0]), {"text": '&lt;b&gt;&amp;amp;"&lt;/b&gt;', "class": "&lt;&amp;&gt;",
                                                       "tooltip": "&lt;&amp;&gt;"})  # fmt: skip

    def test_does_not_start_tidewell(self):
        self.session.end_resident()
        module = Lines(self, ROOT / "packaging" / "waybarModule")
        wait_until(lambda: module.lines == ['{"text":"","class":"off","tooltip":"off"}'], 5, "nothing")


class Lines:
    """The lines that a command prints during the test."""

    def __init__(self, test, *command):
        self.lines = []
        process = subprocess.Popen(command, env=test.session.environment, text=True,
                                   stdout=subprocess.PIPE, start_new_session=True)  # fmt: skip
        reader = threading.Thread(target=self._read, args=(process.stdout,), daemon=True)
        reader.start()
        test.addCleanup(process.stdout.close)
        test.addCleanup(reader.join, 5)
        test.addCleanup(process.wait)
        test.addCleanup(self._end, process)

    @staticmethod
    def _end(process):
        subprocess.run(["kill", "--", f"-{process.pid}"], check=False, stderr=subprocess.DEVNULL)

    def _read(self, stream):
        for line in stream:
            self.lines.append(line.rstrip("\n"))


if __name__ == "__main__":
    case.main()
