#!/usr/bin/python3
"""Reads gcov's JSON, one document a line, and prints the covered lines and branches of each file in a
directory: coverageTable.py DIRECTORY. Branches of exceptions do not count."""

import collections
import json
import os
import sys


def main():
    directory = os.path.join(os.path.realpath(sys.argv[1]), "")
    lines = collections.defaultdict(collections.Counter)
    branches = collections.defaultdict(collections.Counter)
    for text in sys.stdin:
        document = json.loads(text)
        for file in document["files"]:
            path = os.path.realpath(os.path.join(document["current_working_directory"], file["file"]))
            if not path.startswith(directory):
                continue
            name = path[len(directory):]
            for line in file["lines"]:
                number = line["line_number"]
                lines[name][number] += line["count"]
                for index, branch in enumerate(line["branches"]):
                    if not branch["throw"]:
                        branches[name][number, index] += branch["count"]

    def covered(counts):
        return sum(1 for count in counts.values() if count > 0), len(counts)

    sums = [0, 0, 0, 0]
    for name in sorted(lines):
        figures = [*covered(lines[name]), *covered(branches[name])]
        sums = [a + b for a, b in zip(sums, figures)]
        print(f"{name:45} lines {figures[0]:4} of {figures[1]:4}  branches {figures[2]:4} of {figures[3]:4}")
    print(f"lines {sums[0]} of {sums[1]}: {100 * sums[0] / sums[1]:.1f} %")
    print(f"branches {sums[2]} of {sums[3]}: {100 * sums[2] / sums[3]:.1f} %")


main()
