"""What was measured, kept beside the programs."""

import json
import pathlib
import statistics

FILE = pathlib.Path(__file__).resolve().parent / "results.json"


def load():
    return json.loads(FILE.read_text()) if FILE.exists() else {}


def save(name, result):
    """Kept after each one, so that a run can be broken off and taken up again."""
    rounded = json.loads(json.dumps(result), parse_float=lambda text: float(f"{float(text):.6g}"))
    FILE.write_text(json.dumps({**load(), name: rounded}, indent=1, ensure_ascii=False) + "\n")


def brief(result):
    """A line of it, for who looks on."""
    if "groups" not in result:
        return result.get("error", "done")
    return "; ".join(
        f"{name} {statistics.mean(window['cpu'] for window in group['windows']):.3f} % CPU, "
        f"{statistics.mean(window['wakeups'] for window in group['windows']):.1f} wake-ups, "
        f"PSS {group['pss'] / 1024:.1f} MB, private {group['private'] / 1024:.1f} MB"
        for name, group in result["groups"].items())
