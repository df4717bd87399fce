"""The machine that is measured on, and what is measured."""

import os
import pathlib
import platform
import re
import subprocess


def describe(root, build):
    compiler = _first(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", build / "CMakeCache.txt") or "c++"
    return {
        "processor": _first(r"^model name\s*: (.*)$", "/proc/cpuinfo") or platform.machine(),
        "processors": os.cpu_count(),
        "memory": int(_first(r"^MemTotal:\s*(\d+)", "/proc/meminfo") or 0) // 1024,
        "kernel": platform.release().split("-")[0],
        "system": _first(r'^PRETTY_NAME="(.*)"$', "/etc/os-release") or "",
        "compiler": _output(compiler, "--version").split("\n")[0],
        "build": _first(r"^CMAKE_BUILD_TYPE:\w+=(.*)$", build / "CMakeCache.txt") or "",
        "commit": _output("git", "-C", root, "rev-parse", "--short=10", "HEAD"),
    }


def _first(pattern, path):
    found = re.search(pattern, pathlib.Path(path).read_text(), re.MULTILINE)
    return found and found[1]


def _output(*command):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True)
    return done.stdout.strip()
