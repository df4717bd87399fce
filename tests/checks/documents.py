#!/usr/bin/python3
"""Checks that the targets of links and paths in the documents exist.

    documents.py ROOT

In README.md, CONTRIBUTING.md, CHANGELOG.md, SECURITY.md and docs/ it checks relative links with their headings, and
paths of the repository in code. A word in capitals in such a path is a placeholder. Every picture and
every document needs a link, the architecture a link to every room of src/, and the guide must name
every preference.
"""

import pathlib
import re
import sys

FENCE = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"`([^`]+)`")
LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ (.+)$", re.MULTILINE)

# Paths of the repository begin with one of these, or are "./run" or "./test".
TREES = "bench|cmake|docs|fuzz|packaging|scripts|src|tests"
PATH = re.compile(rf"(?<![\w./~-])((?:{TREES})/[\w.*/-]*|\./[\w-]+)")
PLACEHOLDER = re.compile(r"\b[A-Z][A-Z0-9_]+\b")

# No document has to link to these.
STARTS = ["README.md", "CONTRIBUTING.md", "CHANGELOG.md", "SECURITY.md"]

KEY = re.compile(r'Preference<[^>]+> \w+\{"(\w+)"')


def documents(root):
    return [root / name for name in STARTS] + sorted((root / "docs").rglob("*.md"))


def anchors(text):
    """The anchors of a document's headings."""
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
            for heading in HEADING.findall(FENCE.sub("", text))}


def links_of(text):
    """Targets within the repository."""
    prose = CODE.sub("", FENCE.sub("", text))
    return [target for target in LINK.findall(prose) if not re.match(r"[a-z]+:", target)]


def paths_of(text):
    """Paths of the repository that are named as code."""
    code = FENCE.findall(text) + CODE.findall(FENCE.sub("", text))
    return [path.rstrip(".") for piece in code for path in PATH.findall(piece)]


def is_there(root, path):
    return any(root.glob(PLACEHOLDER.sub("*", path.removeprefix("./").rstrip("/"))))


def faults_of(root, document):
    """The missing targets of one document, as lines of text."""
    text, name = document.read_text(encoding="utf-8"), document.relative_to(root)
    for link in links_of(text):
        path, _, anchor = link.partition("#")
        target = document.parent / path if path else document
        if not target.exists():
            yield f"{name}: no {link}"
        elif anchor and anchor not in anchors(target.read_text(encoding="utf-8")):
            yield f"{name}: no heading for {link}"
    for path in paths_of(text):
        if not is_there(root, path):
            yield f"{name}: no {path}"


def targets_of(root):
    """The targets of all links."""
    return {(document.parent / link.partition("#")[0]).resolve()
            for document in documents(root) for link in links_of(document.read_text(encoding="utf-8"))}


def unlinked(root):
    """Pictures and documents without a link to them. Decisions need none."""
    linked = targets_of(root)
    wanted = [*(root / "docs").glob("*.md"), *(root / "docs/images").rglob("*.*")]
    return [f"{path.relative_to(root)}: no document has a link to it"
            for path in sorted(wanted) if path.resolve() not in linked]


def unmentioned(root):
    """Rooms missing from the architecture, and preferences missing from the guide."""
    architecture, guide = root / "docs/architecture.md", root / "docs/guide.md"
    linked = {(architecture.parent / link).resolve()
              for link in links_of(architecture.read_text(encoding="utf-8"))}
    for room in sorted(path for path in (root / "src").iterdir() if path.is_dir()):
        if room.resolve() not in linked:
            yield f"{architecture.name}: no link to src/{room.name}"
    named = CODE.findall(FENCE.sub("", guide.read_text(encoding="utf-8")))
    for key in KEY.findall((root / "src/settings/AppSettings.h").read_text(encoding="utf-8")):
        if key not in named:
            yield f"{guide.name}: no mention of {key}"


def main(root):
    faults = [fault for document in documents(root) for fault in faults_of(root, document)]
    faults += [*unlinked(root), *unmentioned(root)]
    print("\n".join(faults) or f"{len(documents(root))} documents have valid links and paths")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
