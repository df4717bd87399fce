#!/usr/bin/python3
"""Makes a catalogue whose texts are accented and 40 % longer: pseudoLocale.py TEMPLATE CATALOGUE

No letter of the English texts stays, so a text in English was never translated.
"""

import ast
import pathlib
import re
import struct
import sys

PLAIN = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
ACCENTED = "ÁƁÇĎÉƑĞĤÍĴĶĹṀÑÓÞǪŘŠŤÚṼŴẊÝŽáƀçďéƒğĥíĵķĺṁñóþǫřšťúṽŵẋýž"
LONGER = 0.4


def texts(template):
    """The English texts of a catalogue's template."""
    lines = template.read_text(encoding="utf-8").splitlines()
    for at, line in enumerate(lines):
        if line.startswith("msgid "):
            pieces = [line[len("msgid "):]]
            while lines[at + len(pieces)].startswith('"'):
                pieces.append(lines[at + len(pieces)])
            yield "".join(ast.literal_eval(piece) for piece in pieces)


def accented(text):
    """The text with other letters. Each word grows at its end; what stands for a value stays."""

    def longer(word):
        extra = -(-len(word[0]) * int(LONGER * 10) // 10)
        return word[0].translate(str.maketrans(PLAIN, ACCENTED)) + "ö" * extra

    return re.sub("[A-Za-z]+", longer, text)


def catalogue(pairs):
    """The bytes of a catalogue; see "The Format of GNU MO Files" in gettext's manual."""
    pairs = sorted((english.encode(), other.encode()) for english, other in pairs.items())
    start = 7 * 4 + 2 * 8 * len(pairs)
    tables, strings = b"", b""
    for column in (0, 1):
        for pair in pairs:
            tables += struct.pack("=II", len(pair[column]), start + len(strings))
            strings += pair[column] + b"\0"
    head = struct.pack("=7I", 0x950412DE, 0, len(pairs), 28, 28 + 8 * len(pairs), 0, 0)
    return head + tables + strings


def main(template, target):
    pairs = {text: accented(text) for text in texts(pathlib.Path(template))}
    pairs[""] = "Content-Type: text/plain; charset=UTF-8\n"
    pathlib.Path(target).parent.mkdir(parents=True, exist_ok=True)
    pathlib.Path(target).write_bytes(catalogue(pairs))


if __name__ == "__main__":
    main(*sys.argv[1:])
