"""The settings of GTK's desktops, in a file of the session's own."""

from pathlib import Path


def write(config_home: Path, text):
    """Writes groups of settings as they will be read."""
    folder = config_home / "glib-2.0/settings"
    folder.mkdir(parents=True)
    (folder / "keyfile").write_text(text)
