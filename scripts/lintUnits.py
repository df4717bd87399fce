#!/usr/bin/env python3
"""Groups sources into units for clang-tidy, which spends most of its time on headers. A unit is a source
that includes others, so that they share the headers.

Usage: lintUnits.py COMPILE_COMMANDS DIRECTORY SOURCE...
Writes the units and their compile_commands.json into DIRECTORY and prints the units' paths, each
followed by those of its sources. Sources with equal private names are in different units."""

import json
import pathlib
import re
import sys

MOST_SOURCES = 16  # in a unit; a large last unit would leave the other processor idle
PRIVATE = re.compile(r"^namespace \{$(.*?)^\} // namespace$", re.MULTILINE | re.DOTALL)
TARGET = re.compile(r" -o (.*\.dir)/\S+ -c \S+$")
DECLARED = re.compile(r"([A-Za-z_]\w*)\s*[({=;\[]")


def private_names(text):
    names = {"main"} if re.search(r"^int main\(", text, re.MULTILINE) else set()
    for room in PRIVATE.findall(text):
        for line in room.splitlines():
            found = DECLARED.search(line) if line[:1].isalpha() else None
            if found:
                names.add(found.group(1))
    return names


def options_of(entry):
    """The compiler's options without file names and precompiled headers. Without the latter, missing
    includes are found."""
    return re.sub(r" -Winvalid-pch| -include \S*cmake_pch\.hxx", "", TARGET.sub("", entry["command"]))


def units(entries):
    """Lists of sources, each of one target of the build and with its options."""
    groups = {}
    for entry in entries:
        source = pathlib.Path(entry["file"])
        names = private_names(source.read_text())
        target = TARGET.search(entry["command"]).group(1)
        group = groups.setdefault((target, entry["directory"], options_of(entry)), [])
        for sources, taken in group:
            if len(sources) < MOST_SOURCES and not taken & names:
                sources.append(source)
                taken |= names
                break
        else:
            group.append(([source], set(names)))
    for (_, directory, options), group in groups.items():
        for sources, _ in group:
            yield directory, options, sources


def main():
    commands, target = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    wanted = {str(pathlib.Path(name).resolve()) for name in sys.argv[3:]}
    compiled = {entry["file"]: entry for entry in json.loads(commands.read_text())}
    missing = wanted - compiled.keys()
    database = []
    target.mkdir(parents=True, exist_ok=True)
    for old in target.glob("unit*.cpp"):
        old.unlink()
    found = units(compiled[name] for name in sorted(wanted & compiled.keys()))
    for index, (directory, options, sources) in enumerate(found):
        unit = target / f"unit{index}.cpp"
        # The C library's header of network devices must precede the kernel's.
        sources.sort(key=lambda source: "<net/if.h>" not in source.read_text())
        unit.write_text("".join(f'#include "{source}" // NOLINT\n' for source in sources))
        for file in (unit, *sources):
            command = f"{options} -o {index}.o -c {file}"
            database.append({"directory": directory, "command": command, "file": str(file)})
        print(unit, *sources)
    (target / "compile_commands.json").write_text(json.dumps(database, indent=1))
    for name in sorted(missing):  # not compiled in this build: checked like its neighbours
        print(name, name)


if __name__ == "__main__":
    main()
